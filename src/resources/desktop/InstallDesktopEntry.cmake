# Run at install time: writes the desktop entry for the prefix the client is
# installed under, then installs it. Expects VELURIA_DESKTOP_TEMPLATE,
# VELURIA_DESKTOP_ENTRY (where to write it), VELURIA_INSTALL_BINDIR and
# VELURIA_INSTALL_DATADIR.

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

configure_file("${VELURIA_DESKTOP_TEMPLATE}" "${VELURIA_DESKTOP_ENTRY}" @ONLY)
file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/${VELURIA_INSTALL_DATADIR}/applications" TYPE FILE
     FILES "${VELURIA_DESKTOP_ENTRY}")
