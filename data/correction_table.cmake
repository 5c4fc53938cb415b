# Turns the CH4 correction factor table (comma-separated, one pressure row a
# line, "#" lines are comments) into C++ source.
#
#   cmake -DINPUT=<table.csv> -DOUTPUT=<table.cpp> -P correction_table.cmake
#
# A table that is not 66 rows of 106 numbers stops the build; nothing is
# written then.

set(rows_expected 66)
set(columns_expected 106)
set(number_pattern "^[-+]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][-+]?[0-9]+)?$")

if(NOT INPUT OR NOT OUTPUT)
  message(FATAL_ERROR "correction table: usage: cmake -DINPUT=<csv> -DOUTPUT=<cpp> -P ${CMAKE_CURRENT_LIST_FILE}")
endif()

file(STRINGS "${INPUT}" lines)
set(body "")
set(rows 0)
set(line_number 0)
foreach(line IN LISTS lines)
  math(EXPR line_number "${line_number} + 1")
  string(STRIP "${line}" line)
  if(line STREQUAL "" OR line MATCHES "^#")
    continue()
  endif()
  string(REPLACE "," ";" values "${line}")
  list(LENGTH values columns)
  if(NOT columns EQUAL columns_expected)
    message(FATAL_ERROR "${INPUT}:${line_number}: correction table row has ${columns} values, expected ${columns_expected}")
  endif()
  set(row "")
  foreach(value IN LISTS values)
    string(STRIP "${value}" value)
    if(NOT value MATCHES "${number_pattern}")
      message(FATAL_ERROR "${INPUT}:${line_number}: correction table value \"${value}\" is not a number")
    endif()
    if(value MATCHES "^[-+]?[0-9]+$")
      string(APPEND value ".")  # "1f" would not be a float literal, "1.f" is
    endif()
    string(APPEND row "${value}f, ")
  endforeach()
  string(APPEND body "    {${row}},\n")
  math(EXPR rows "${rows} + 1")
endforeach()

if(NOT rows EQUAL rows_expected)
  message(FATAL_ERROR "${INPUT}: correction table has ${rows} rows, expected ${rows_expected}")
endif()

get_filename_component(input_name "${INPUT}" NAME)
file(WRITE "${OUTPUT}"
  "// Generated from ${input_name}; edit the table, not this file.\n"
  "#include \"borealis/config/correction_factor.h\"\n\n"
  "const float kCorrectionFactors[kCorrectionPressureRows][kCorrectionTemperatureColumns] = {\n"
  "${body}};\n")
