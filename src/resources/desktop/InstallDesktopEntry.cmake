# Run at install time: writes the desktop entry and the file managers' actions
# for the prefix the client is installed under, then installs them. Expects
# VELURIA_DESKTOP_TEMPLATES, a list of "<template>|<folder under the prefix>|
# <file written>", and VELURIA_INSTALL_BINDIR.

# A relocatable bundle has no place yet: its set-up writes them from the
# templates once it is unpacked.
if("$ENV{VELURIA_RELOCATABLE}")
  return()
endif()

set(program "${CMAKE_INSTALL_PREFIX}/${VELURIA_INSTALL_BINDIR}/veluria")

# The command names the program plainly when it can, as simple launchers read
# only plain commands; a path with characters the shell would read is quoted
# as the desktop entry format says. Percent signs are doubled either way.
string(REPLACE "%" "%%" exec "${program}")
if(exec MATCHES "[ \t\"'\\\\><~|&;$*?#()`]")
  string(REPLACE "\\" "\\\\" exec "${exec}")
  string(REPLACE "\"" "\\\"" exec "${exec}")
  string(REPLACE "`" "\\`" exec "${exec}")
  string(REPLACE "$" "\\$" exec "${exec}")
  set(exec "\"${exec}\"")
endif()
# Both are string values, whose backslashes are escaped once more.
string(REPLACE "\\" "\\\\" VELURIA_EXEC_PROGRAM "${exec}")
string(REPLACE "\\" "\\\\" VELURIA_INSTALLED_PROGRAM "${program}")
set(VELURIA_INSTALLED_PROGRAM_RAW "${program}")

foreach(entry IN LISTS VELURIA_DESKTOP_TEMPLATES)
  string(REPLACE "|" ";" parts "${entry}")
  list(GET parts 0 template)
  list(GET parts 1 folder)
  list(GET parts 2 written)
  configure_file("${template}" "${written}" @ONLY)
  # Dolphin shows a service menu from the user's own folders only when it is
  # executable.
  set(permissions)
  if(folder MATCHES "servicemenus$" AND NOT "$ENV{HOME}" STREQUAL "" AND CMAKE_INSTALL_PREFIX MATCHES "^$ENV{HOME}/")
    set(permissions FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ WORLD_READ)
  endif()
  file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}" TYPE FILE ${permissions} FILES "${written}")
endforeach()
