# Hands the headers and the documents to Doxygen, which reads some things otherwise than a person does:
#
# - A header's opening comment becomes the manual's word on its file; of ZRTExpression.h, on its class.
#   Examples, set in by three blanks, become code, and "---- Title ----" heads a group of members.
# - A document's headings get the names by which links call them, "file_title", since Doxygen knows one set
#   of names for all pages; links go to these; and "@" is a character outside of code.

function ends_group() { if (in_group) print "/// @}"; in_group = 0 }

# The name of a heading of the document; of the second with the same title "title-1".
function anchor(document, title,    label) {
  title = tolower(title)
  gsub(/[^a-z0-9 _-]/, "", title)
  gsub(/ /, "-", title)
  label = document "_" title
  return label (label in uses ? "-" ++uses[label] : substr("", uses[label] = 0))
}

# What stands outside of `code`, with "@" and links as Doxygen wants them.
function plain(text,    done, link, parts) {
  gsub(/@/, "\\@", text)
  gsub(/"\\@"/, "\"@\"", text)  # in quotes it is one anyway
  while (match(text, /\]\([a-z\/-]*(\.md)?#[^)]*\)/)) {
    link = substr(text, RSTART + 2, RLENGTH - 3)
    split(link, parts, "#")
    sub(/\.md$/, "", parts[1])
    sub(/.*\//, "", parts[1])
    done = done substr(text, 1, RSTART + 1) "#" (parts[1] == "" ? name : parts[1]) "_" parts[2] ")"
    text = substr(text, RSTART + RLENGTH)
  }
  return done text
}

FNR == 1 {
  name = FILENAME
  sub(/.*\//, "", name)
  is_document = sub(/\.md$/, "", name)
  opening = !is_document
  if (opening) print name == "ZRTExpression.h" ? "/// @class ZRTExpression" : "/// @file"
}

is_document && /^ *```/ {
  in_fence = !in_fence
  sub(/```zrt-.*/, "```")
  print
  next
}
is_document && in_fence { print; next }
is_document {
  title = $0
  if (/^##+ /) {
    sub(/^#+ /, "", title)
    $0 = $0 " {#" anchor(name, title) "}"
  }
  count = split($0, pieces, "`")
  line = plain(pieces[1])
  for (i = 2; i <= count; ++i) line = line "`" (i % 2 ? plain(pieces[i]) : pieces[i])
  print line
  next
}

opening && !/^\/\// { opening = 0 }
opening { sub(/^\/\//, "///") }
/^ *\/\/ ---- .* -+$/ {
  ends_group()
  gsub(/^ *\/\/ -+ | -+$/, "")
  print "/// @name " $0
  print "/// @{"
  in_group = 1
  next
}
/^ ?(private|protected|public):|^};/ { ends_group() }
/^ *\/\/\/   [^ ]/ && (was_empty || in_code) { in_code = 1 }
!/^ *\/\/\/   / { in_code = 0 }
in_code { sub(/\/\/\/   /, "///       ") }
{
  was_empty = /^ *\/\/\/ *$/
  print
}
END { ends_group() }
