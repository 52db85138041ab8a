# What ctest gives to every test, whatever the machine and whoever runs it: language, time zone, fonts.
# tests/e2e/run does the same for the programs on its desktop.
set(ENV{LC_ALL} C.UTF-8)
unset(ENV{LANGUAGE})
set(ENV{TZ} UTC)
set(ENV{FONTCONFIG_FILE} ${CMAKE_CURRENT_LIST_DIR}/fonts.conf)
