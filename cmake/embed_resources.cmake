# Writes FOLDER/NAME.h and .cpp with the contents of FILES, which are separated by "|"; see OrvoResources.cmake.

string(REPLACE "|" ";" FILES "${FILES}")
set(declarations "")
set(definitions "")
set(rows "")
set(names "")

foreach(file IN LISTS FILES)
    get_filename_component(name "${file}" NAME)
    string(MAKE_C_IDENTIFIER "${name}" name)
    file(SIZE "${file}" size)
    file(READ "${file}" bytes HEX)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")

    string(APPEND declarations "extern const char* const ${name};\ninline constexpr int ${name}Size = ${size};\n")
    string(APPEND definitions "static const unsigned char ${name}Data[] { ${bytes} 0 };\n"
        "const char* const ${name} = reinterpret_cast<const char*> (${name}Data);\n")
    string(APPEND rows "    { \"${name}\", ${name}, ${name}Size },\n")
    string(APPEND names "    \"${name}\",\n")
endforeach()

list(LENGTH FILES count)

file(WRITE "${FOLDER}/${NAME}.h" "// Made by the build from the files in resources/.
#pragma once

namespace ${NAME}
{
${declarations}
inline constexpr int namedResourceListSize = ${count};
extern const char* const namedResourceList[];

/** Null, and a size of 0, for an unknown name. */
const char* getNamedResource (const char* name, int& size);
}
")

file(WRITE "${FOLDER}/${NAME}.cpp" "// Made by the build from the files in resources/.
#include \"${NAME}.h\"

#include <cstring>

namespace ${NAME}
{
${definitions}
const char* const namedResourceList[] {
${names}};

static const struct { const char *name, *data; int size; } resources[] {
${rows}};

const char* getNamedResource (const char* name, int& size)
{
    for (const auto& resource : resources)
    {
        if (std::strcmp (name, resource.name) == 0)
        {
            size = resource.size;
            return resource.data;
        }
    }

    size = 0;
    return nullptr;
}
}
")
