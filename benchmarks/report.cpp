// The table is Markdown, so that it can be read at once and stand in a document as it is.
#include "report.h"

#include <sys/utsname.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "aims.h"

namespace zrt_bench {

namespace {

using Cells = std::array<std::string, 9>;

// Three digits that count, without an exponent.
std::string Digits(double number) {
  const double size = std::fabs(number);
  const int decimals = size >= 99.95 || size == 0 ? 0 : size >= 9.995 ? 1 : size >= 0.0995 ? 2 : 3;
  std::ostringstream text;
  text << std::fixed << std::setprecision(decimals) << number;
  return text.str();
}

std::string AimText(const Rival* rival) {
  if (rival == nullptr || !rival->aim) return "-";
  std::ostringstream text;
  text << *rival->aim;
  return text.str();
}

std::string NameAndAmount(const Rival* rival, Unit unit) {
  if (rival == nullptr) return "";
  return rival->amount > 0 ? rival->name + " " + Shown(rival->amount, unit) : rival->name;
}

std::string RatioText(const Rival* rival) { return rival == nullptr ? "" : Digits(rival->ratio); }

// "|" would end a cell of the table.
std::string Escaped(std::string text) {
  for (std::size_t at = 0; (at = text.find('|', at)) != std::string::npos; at += 2) {
    text.insert(at, 1, '\\');
  }
  return text;
}

void AddLines(const Row& row, std::vector<Cells>* lines) {
  const Rival* peer = row.BestPeer();
  const Rival* limit = row.Limit();
  const bool has_aim = std::any_of(row.rivals.begin(), row.rivals.end(),
                                   [](const Rival& rival) { return rival.aim.has_value(); });
  lines->push_back({row.id, Escaped(row.subject), Shown(row.amount, row.unit),
                    NameAndAmount(peer, row.unit), RatioText(peer), NameAndAmount(limit, row.unit),
                    RatioText(limit), AimText(peer) + "; " + AimText(limit),
                    !has_aim      ? ""
                    : row.IsMet() ? "yes"
                                  : "**no**"});
  for (const Rival& rival : row.rivals) {
    if (rival.role != Role::kPeer || !rival.aim || &rival == peer) continue;
    lines->push_back({"", "", "", NameAndAmount(&rival, row.unit), RatioText(&rival), "", "",
                      AimText(&rival), rival.IsMet() ? "yes" : "**no**"});
  }
}

void PrintLines(const std::vector<Cells>& lines, std::ostream& out) {
  std::array<std::size_t, 9> widths{};
  for (const Cells& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], line[i].size());
  }
  for (std::size_t k = 0; k < lines.size(); ++k) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      out << "| " << lines[k][i] << std::string(widths[i] - lines[k][i].size() + 1, ' ');
    }
    out << "|\n";
    if (k > 0) continue;
    for (const std::size_t width : widths) out << '|' << std::string(width + 2, '-');
    out << "|\n";
  }
}

void PrintSummary(const std::vector<Row>& rows, std::ostream& out) {
  const auto met_count =
      std::count_if(rows.begin(), rows.end(), [](const Row& row) { return row.IsMet(); });
  std::string slower;
  for (const Row& row : rows) {
    const Rival* peer = row.BestPeer();
    if (peer != nullptr && peer->ratio > 1) slower += (slower.empty() ? "" : ", ") + row.id;
  }
  out << '\n' << met_count << " of " << rows.size() << " rows meet their aims. ";
  out << (slower.empty() ? "None is slower than its best peer." : "Slower than the best peer: ")
      << slower << (slower.empty() ? "" : ".") << '\n';
}

std::string ProcessorName() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
  }
  return "unknown processor";
}

nlohmann::json JsonOf(const Row& row) {
  constexpr const char* kUnits[] = {"seconds", "bytes", "count"};
  constexpr const char* kRoles[] = {"library", "peer", "limit"};
  nlohmann::json json{
      {"row",     row.id                            },
      {"subject", row.subject                       },
      {"unit",    kUnits[static_cast<int>(row.unit)]},
      {"amount",  row.amount                        },
      {"met",     row.IsMet()                       },
      {"rivals",  nlohmann::json::array()           }
  };
  for (const Rival& rival : row.rivals) {
    nlohmann::json entry{
        {"name",   rival.name                          },
        {"role",   kRoles[static_cast<int>(rival.role)]},
        {"amount", rival.amount                        },
        {"ratio",  rival.ratio                         }
    };
    if (rival.aim) entry["aim"] = *rival.aim;
    json["rivals"].push_back(entry);
  }
  for (const Line& line : row.lines) {
    json["lines"].push_back({
        {"name",              line.name                          },
        {"role",              kRoles[static_cast<int>(line.role)]},
        {"bytes_and_seconds", line.points                        }
    });
  }
  return json;
}

}  // namespace

bool Row::IsMet() const {
  return std::all_of(rivals.begin(), rivals.end(), [](const Rival& r) { return r.IsMet(); });
}

const Rival* Row::BestPeer() const {
  const Rival* best = nullptr;
  for (const Rival& rival : rivals) {
    if (rival.role != Role::kPeer) continue;
    if (best == nullptr || rival.amount < best->amount) best = &rival;
  }
  return best;
}

const Rival* Row::Limit() const {
  const auto is_limit = [](const Rival& rival) { return rival.role == Role::kLimit; };
  const auto place = std::find_if(rivals.begin(), rivals.end(), is_limit);
  return place == rivals.end() ? nullptr : &*place;
}

void Row::KeepLeast(const Row& again) {
  amount = std::min(amount, again.amount);
  for (std::size_t i = 0; i < rivals.size(); ++i) {
    rivals[i].amount = std::min(rivals[i].amount, again.rivals[i].amount);
    rivals[i].ratio = amount / rivals[i].amount;
  }
}

void Row::AddRival(const std::string& name, Role role, double rival_amount, double ratio) {
  Rival rival{name, role, rival_amount, ratio, {}};
  const RowAims aims = AimsOf(id);
  for (const Aim& aim : {aims.peers[0], aims.peers[1], aims.limit}) {
    if (aim.rival == name) rival.aim = aim.ratio;
  }
  rivals.push_back(rival);
}

Row TimedRow(std::string id, std::string subject, const std::vector<Contestant>& contestants,
             const std::vector<double>& seconds) {
  Row row{std::move(id), std::move(subject), Unit::kSeconds, seconds.front(), {}, {}, {}};
  for (std::size_t i = 1; i < contestants.size(); ++i) {
    row.AddRival(contestants[i].name, contestants[i].role, seconds[i], seconds[0] / seconds[i]);
  }
  return row;
}

std::vector<std::string> Surroundings() {
  utsname system{};
  uname(&system);
  std::string release = system.release;
  release.erase(std::min(release.find('-'), release.size()));
  std::ifstream huge_pages("/sys/kernel/mm/transparent_hugepage/enabled");
  std::string choice;
  std::getline(huge_pages, choice);
  const std::size_t open = choice.find('['), close = choice.find(']');
  choice = close == std::string::npos ? "none" : choice.substr(open + 1, close - open - 1);
  return {
    "Processor: " + ProcessorName() + ", " + std::to_string(std::thread::hardware_concurrency()) +
        " cores, " + system.machine,
#if defined(__clang__)
        "Compiler: clang " __clang_version__,
#else
        "Compiler: g++ " __VERSION__,
#endif
        std::string("System: ") + system.sysname + " " + release +
            ", transparent huge pages: " + choice
  };
}

void PrintTable(const std::vector<Row>& rows, std::ostream& out) {
  for (const std::string& line : Surroundings()) out << "- " << line << '\n';
  std::vector<Cells> lines{
      {"Row", "Subject", "This library", "Best peer", "Ratio", "Limit", "Ratio", "Aims", "Met"}
  };
  for (const Row& row : rows) AddLines(row, &lines);
  out << '\n';
  PrintLines(lines, out);
  PrintSummary(rows, out);
}

void WriteJson(const std::vector<Row>& rows, const std::string& path) {
  nlohmann::json json{
      {"surroundings", Surroundings()         },
      {"rows",         nlohmann::json::array()}
  };
  for (const Row& row : rows) json["rows"].push_back(JsonOf(row));
  std::ofstream file(path);
  if (!(file << json.dump(1) << '\n')) throw std::runtime_error("cannot write " + path);
}

std::string Shown(double amount, Unit unit) {
  if (unit == Unit::kCount) {
    return amount == std::floor(amount) ? std::to_string(std::lround(amount)) : Digits(amount);
  }
  static constexpr std::array<const char*, 4> kTimes = {" ns", " us", " ms", " s"};
  static constexpr std::array<const char*, 4> kSizes = {" B", " KiB", " MiB", " GiB"};
  const bool is_time = unit == Unit::kSeconds;
  const double step = is_time ? 1000 : 1024;
  double scaled = is_time ? amount * 1e9 : amount;
  std::size_t place = 0;
  for (; scaled >= 0.9995 * step && place < 3; ++place) scaled /= step;
  return Digits(scaled) + (is_time ? kTimes[place] : kSizes[place]);
}

}  // namespace zrt_bench
