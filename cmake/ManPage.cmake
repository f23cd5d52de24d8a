# cmake -P script: writes the command's man page from its own --help, each
# subcommand's help becoming a section of its own. The subcommands are those
# the command declares (the first line of its --completion-table).
#   -DCOMMAND=<the built command> -DVERSION=<x.y.z> -DOUTPUT=<page.1> -DWORK=<folder> -DHELP2MAN=<help2man>
if(NOT HELP2MAN)
  message(FATAL_ERROR "help2man writes the man page; scripts/install-deps test installs it")
endif()
execute_process(COMMAND ${COMMAND} --completion-table OUTPUT_VARIABLE table RESULT_VARIABLE status)
if(NOT status EQUAL 0 OR NOT table MATCHES "^:([^:\n]*):")
  message(FATAL_ERROR "${COMMAND} --completion-table failed (${status})")
endif()
string(REPLACE " " ";" subcommands "${CMAKE_MATCH_1}")
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
  COMMAND ${HELP2MAN} --no-info --version-string=${VERSION} --include=${WORK}/subcommands.h2m
          "--name=the journal's widgets off the phone: timelines, view trees, drawings and taps"
          --section=1 --output=${OUTPUT} ${COMMAND}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "help2man failed (${status})")
endif()
