# Writes OUTPUT, a C++ source whose function FUNCTION (in quillan::server)
# returns the bytes of INPUT, so the page is part of the binary yet edited as
# the plain files it is. Run as `cmake -DINPUT=... -DOUTPUT=... -DFUNCTION=...
# -P EmbedFile.cmake`.
file(READ "${INPUT}" hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
# Sixteen bytes a line keep the generated lines short.
string(REPEAT "0x[0-9a-f][0-9a-f]," 16 line)
string(REGEX REPLACE "(${line})" "\\1\n    " bytes "${bytes}")
get_filename_component(name "${INPUT}" NAME)
file(WRITE "${OUTPUT}" "// Generated from ${name} at build time; edit that file instead.
#include <string_view>

namespace quillan::server {

// The bytes live inside the function, so that a unity build of several pages has one array per page.
std::string_view ${FUNCTION}() {
  static constexpr unsigned char kBytes[] = {
    ${bytes}};
  return {reinterpret_cast<const char*>(kBytes), sizeof kBytes};
}

}  // namespace quillan::server
")
