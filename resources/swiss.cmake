# cmake -DFROM=de.strings -DTO=de-CH.strings -P swiss.cmake
# German as Switzerland and Liechtenstein write it: without ß, and with other quotation marks.
file(READ ${FROM} texts)
string(REPLACE "ß" "ss" texts "${texts}")
string(REPLACE "„" "«" texts "${texts}")
string(REPLACE "“" "»" texts "${texts}")
file(WRITE ${TO} "${texts}")
