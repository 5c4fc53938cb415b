# Writes OUTPUT, a C++ source that holds each file of FILES ("url=path=type"
# entries separated by "|") as bytes, for vela serve to answer from memory:
# the page needs nothing installed beside the program.
set(body "#include \"tools/serve/embedded_files.h\"\n\nnamespace {\n")
set(table "")
set(index 0)
string(REPLACE "|" ";" FILES "${FILES}")
foreach(entry IN LISTS FILES)
  string(REPLACE "=" ";" parts "${entry}")
  list(GET parts 0 url)
  list(GET parts 1 path)
  list(GET parts 2 type)
  file(READ "${path}" hex HEX)
  string(LENGTH "${hex}" digits)
  math(EXPR size "${digits} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
  string(REGEX REPLACE "(([^,]*,){32})" "\\1\n" bytes "${bytes}")
  string(APPEND body "const char file${index}[] = {\n${bytes}};\n")
  string(APPEND table "    {\"${url}\", \"${type}\", {file${index}, ${size}}},\n")
  math(EXPR index "${index} + 1")
endforeach()
string(APPEND body "}  // namespace\n\nconst std::vector<EmbeddedFile>& EmbeddedFiles() {\n"
  "    static const std::vector<EmbeddedFile> files = {\n${table}    };\n    return files;\n}\n")
file(WRITE "${OUTPUT}" "${body}")
