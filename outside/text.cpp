// Text operations and digit functions on NUL-terminated texts. They know no sizes of buffers: a
// caller sizes what it hands in.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "hq4170.h"

namespace {

int Position(std::size_t found) {
  return found == std::string_view::npos ? -1 : static_cast<int>(found);
}

std::size_t Clamp(int count, std::size_t most) {
  return count < 0 ? 0 : std::min(static_cast<std::size_t>(count), most);
}

// `part` may lie in the buffer of `dst`.
void Put(char* dst, std::string_view part) {
  std::memmove(dst, part.data(), part.size());
  dst[part.size()] = '\0';
}

std::string_view Slice(const char* src, int n, int m) {
  std::string_view part(src);
  part.remove_prefix(Clamp(m, part.size()));
  return n == 0 ? part : part.substr(0, Clamp(n, part.size()));
}

}  // namespace

int LString::Find(const char* text, char c) { return Position(std::string_view(text).find(c)); }

int LString::Find(const char* text, const char* sub) {
  return Position(std::string_view(text).find(sub));
}

int LString::FindOneOf(const char* text, const char* set) {
  return Position(std::string_view(text).find_first_of(set));
}

int LString::ReverseFindOneOf(const char* text, const char* set) {
  return Position(std::string_view(text).find_last_of(set));
}

void LString::Left(char* dst, const char* src, int n) { Mid(dst, src, 0, n); }

void LString::Right(char* dst, const char* src, int n) {
  const std::string_view text(src);
  Put(dst, text.substr(text.size() - Clamp(n, text.size())));
}

void LString::Mid(char* dst, const char* src, int start, int n) {
  const std::string_view text(src);
  const std::size_t from = Clamp(start, text.size());
  Put(dst, text.substr(from, Clamp(n, text.size() - from)));
}

void LString::TrimLeft(char* text) { Put(text, text + std::strspn(text, " ")); }

void LString::TrimRight(char* text) {
  text[std::string_view(text).find_last_not_of(' ') + 1] = '\0';  // npos + 1 is 0
}

void util_strncpy(char* dst, const char* src, int n, int m) { Put(dst, Slice(src, n, m)); }

void util_strncpy(char* dst, char* src, int n, int m) { Put(dst, Slice(src, n, m)); }

void util_strncat(char* dst, const char* src, int n, int m) {
  const std::string_view part = Slice(src, n, m);
  Put(dst + std::strlen(dst), part);
}

void util_strncat(char* dst, char* src, int n, int m) {
  util_strncat(dst, static_cast<const char*>(src), n, m);
}

char util_Hex2HexAnsi(unsigned char v) { return "0123456789ABCDEF"[v & 0xF]; }

unsigned char util_HexAnsi2Hex(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned char>(c - '0');
  if (c >= 'A' && c <= 'F') return static_cast<unsigned char>(c - 'A' + 10);
  if (c >= 'a' && c <= 'f') return static_cast<unsigned char>(c - 'a' + 10);
  return 0;
}
