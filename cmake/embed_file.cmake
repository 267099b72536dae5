# cmake -DINPUT=FILE -DOUTPUT=SOURCE -DFUNCTION=NAME -DHEADER=HEADER -P embed_file.cmake
#
# Writes SOURCE, a C++ file whose function pelkrin::NAME() returns the bytes
# of FILE, exactly, as a std::string_view (HEADER declares it).
file(READ "${INPUT}" hex HEX)
string(LENGTH "${hex}" hex_length)
math(EXPR size "${hex_length} / 2")
# Sixteen bytes a line.
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
string(REGEX REPLACE "(('[^']*',){16})" "\\1\n    " bytes "${bytes}")
if(size EQUAL 0)
  set(bytes "0")
endif()
file(WRITE "${OUTPUT}"
"// Made by the build from ${INPUT}: edit that file, not this one.
#include \"${HEADER}\"

namespace pelkrin {
namespace {

const char bytes[] = {
    ${bytes}
};

}  // namespace

std::string_view ${FUNCTION}() { return std::string_view(bytes, ${size}); }

}  // namespace pelkrin
")
