# Writes the header that names the commit, at every build: cmake -D SOURCE=... -D HEADER=... -P this.
cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND git -C "${SOURCE}" describe --always --dirty --exclude=*
                OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
file(CONFIGURE OUTPUT "${HEADER}" CONTENT "#define SORVANTA_COMMIT \"@commit@\"\n" @ONLY)
