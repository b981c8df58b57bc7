# Puts the page together from its parts, and makes a source of it that the tool is built with:
#   cmake -DPAGE=<folder of the parts> -DHTML=<page without data> -DSOURCE=<file.cpp> -P Embed.cmake
# The page allows its own script and style, by their hashes, and nothing else. @DATA@ stands where the data go.

# The order is that of their use: one script comes out.
set(scripts data list tree plot values panel search page)

# The digest of a text as a policy of a page names it: base64, where CMake gives hexadecimal digits.
function(policy_hash text out)
    set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    string(SHA256 digits "${text}")
    set(result "")
    # 64 digits, and two for the one byte that is missing to a multiple of three.
    set(digits "${digits}00")
    foreach(begin RANGE 0 60 6)
        string(SUBSTRING ${digits} ${begin} 6 part)
        foreach(shift IN ITEMS 18 12 6 0)
            math(EXPR place "(0x${part} >> ${shift}) & 63")
            string(SUBSTRING ${alphabet} ${place} 1 letter)
            string(APPEND result ${letter})
        endforeach()
    endforeach()
    string(SUBSTRING ${result} 0 43 result)
    set(${out} "sha256-${result}=" PARENT_SCOPE)
endfunction()

file(READ ${PAGE}/page.html html)
file(READ ${PAGE}/page.css style)
set(script "")
foreach(name IN LISTS scripts)
    file(READ ${PAGE}/${name}.js part)
    string(APPEND script "${part}")
endforeach()
policy_hash("${style}" style_hash)
policy_hash("${script}" script_hash)

# What a placeholder stands for is not looked through again: the script comes last but one, and holds none.
string(REPLACE "@STYLE_HASH@" "${style_hash}" html "${html}")
string(REPLACE "@SCRIPT_HASH@" "${script_hash}" html "${html}")
string(REPLACE "@STYLE@" "${style}" html "${html}")
string(REPLACE "@SCRIPT@" "${script}" html "${html}")
if(HTML)
    file(WRITE ${HTML} "${html}")
endif()

# A text as literals, cut at ends of lines: compilers need not take one of more than 65,536 characters.
function(literals text out)
    set(result "")
    string(LENGTH "${text}" left)
    while(left GREATER 30000)
        string(SUBSTRING "${text}" 0 30000 piece)
        string(FIND "${piece}" "\n" end REVERSE)
        math(EXPR end "${end} + 1")
        string(SUBSTRING "${text}" 0 ${end} piece)
        string(SUBSTRING "${text}" ${end} -1 text)
        string(APPEND result "    R\"lvp(${piece})lvp\",\n")
        string(LENGTH "${text}" left)
    endwhile()
    set(${out} "${result}    R\"lvp(${text})lvp\",\n" PARENT_SCOPE)
endfunction()

if(SOURCE)
    string(FIND "${html}" "@DATA@" place)
    string(SUBSTRING "${html}" 0 ${place} before)
    math(EXPR place "${place} + 6")
    string(SUBSTRING "${html}" ${place} -1 after)
    literals("${before}" before)
    literals("${after}" after)
    file(WRITE ${SOURCE} "#include \"tools/view/PageText.h\"\n\nnamespace lvp::tool {\n\n"
        "const std::vector<std::string_view> kPageBeforeData{\n${before}};\n\n"
        "const std::vector<std::string_view> kPageAfterData{\n${after}};\n\n"
        "}  // namespace lvp::tool\n")
endif()
