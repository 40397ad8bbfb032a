# Writes OUT with the version text commit-<branch>-<n>-g<hash>, where n counts the commits since the last
# tag; outside a checkout the parts are "unknown", 0 and zeros. Run at each build; touches OUT only when the
# text changes.
cmake_minimum_required(VERSION 3.25)

function(git out)
  execute_process(COMMAND git ${ARGN} WORKING_DIRECTORY ${SOURCE_DIR} OUTPUT_VARIABLE text
                  OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE fault)
  if(fault)
    set(text "")
  endif()
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

git(hash rev-parse --short HEAD)
if(hash STREQUAL "")
  set(version "commit-unknown-0-g0000000")
else()
  git(branch rev-parse --abbrev-ref HEAD)
  git(tag describe --tags --abbrev=0)
  if(tag STREQUAL "")
    git(count rev-list --count HEAD)
  else()
    git(count rev-list --count ${tag}..HEAD)
  endif()
  set(version "commit-${branch}-${count}-g${hash}")
endif()
file(CONFIGURE OUTPUT ${OUT} CONTENT "#include \"version/version.h\"\n\nnamespace vemra {\n\nconst char* version()\n{\n    return \"@version@\";\n}\n\n}  // namespace vemra\n" @ONLY)
