# SPDX-License-Identifier: MIT
# Compiles SOURCE and expects an error that names DIAGNOSTIC and none of the other kinds of error,
# or no error at all if DIAGNOSTIC is empty. Lists are separated by "|".
set(kinds
  FormatHasMoreConversionsThanValues
  FormatHasFewerConversionsThanValues
  FormatHasAnUnknownConversion
  ValueDoesNotFitItsConversion)

string(REPLACE "|" ";" arguments "${OPTIONS}")
foreach(list_and_flag IN ITEMS INCLUDE_FOLDERS:-I DEFINITIONS:-D)
  string(REPLACE ":" ";" list_and_flag "${list_and_flag}")
  list(GET list_and_flag 0 list)
  list(GET list_and_flag 1 flag)
  string(REPLACE "|" ";" items "${${list}}")
  foreach(item IN LISTS items)
    list(APPEND arguments "${flag}${item}")
  endforeach()
endforeach()

set(ENV{LC_ALL} C)
execute_process(
  COMMAND "${COMPILER}" ${arguments} "${SOURCE}"
  RESULT_VARIABLE result
  OUTPUT_VARIABLE messages
  ERROR_VARIABLE messages)

if(DIAGNOSTIC STREQUAL "")
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "A correct source does not compile (${result}):\n${messages}")
  endif()
  return()
endif()

if(result EQUAL 0)
  message(FATAL_ERROR "A wrong source compiles.")
endif()
if(NOT messages MATCHES "${DIAGNOSTIC}")
  message(FATAL_ERROR "The compiler does not name ${DIAGNOSTIC}:\n${messages}")
endif()
foreach(kind IN LISTS kinds)
  if(NOT kind STREQUAL DIAGNOSTIC AND messages MATCHES "${kind}")
    message(FATAL_ERROR "The compiler names ${kind} instead of ${DIAGNOSTIC}:\n${messages}")
  endif()
endforeach()
