# Fails unless the generator's report shows the automaton that the language is defined by:
# 131 rules (numbered 0 to 130), 242 states (0 to 241), no conflict.
file(READ ${REPORT} report)

function(require pattern what)
  if(NOT report MATCHES "${pattern}")
    message(FATAL_ERROR "The grammar's automaton must have ${what}; see ${REPORT}")
  endif()
endfunction()

require("\n +130 [a-z_]+:" "131 rules")
require("\nState 241\n" "242 states")
if(report MATCHES "\n +131 [a-z_]+:" OR report MATCHES "\nState 242\n" OR report MATCHES "conflict")
  message(FATAL_ERROR "The grammar's automaton must have 131 rules, 242 states and no conflict; "
    "see ${REPORT}")
endif()
