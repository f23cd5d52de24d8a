# cmake -P script: writes the command's man page from its own --help, each
# subcommand's help becoming a section of its own.
#   -DCOMMAND=<the built command> -DVERSION=<x.y.z> -DOUTPUT=<page.1> -DWORK=<folder>
#   -DSUBCOMMANDS=<a;b;...> (separated by commas)
string(REPLACE "," ";" subcommands "${SUBCOMMANDS}")
set(include_text "[SUBCOMMANDS]\n")
foreach(subcommand ${subcommands})
  execute_process(COMMAND ${COMMAND} ${subcommand} --help OUTPUT_VARIABLE help RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${COMMAND} ${subcommand} --help failed (${status})")
  endif()
  # help2man reads its include file as roff: leading dots and backslashes are markup.
  string(REPLACE "\\" "\\e" help "${help}")
  string(REGEX REPLACE "(^|\n)\\." "\\1\\\\&." help "${help}")
  string(APPEND include_text ".SS ${subcommand}\n.nf\n${help}\n.fi\n")
endforeach()
file(WRITE ${WORK}/subcommands.h2m "${include_text}")
execute_process(
  COMMAND help2man --no-info --version-string=${VERSION} --include=${WORK}/subcommands.h2m
          "--name=the journal's widgets off the phone: timelines, view trees, drawings and taps"
          --section=1 --output=${OUTPUT} ${COMMAND}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "help2man failed (${status})")
endif()
