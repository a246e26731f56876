# A rule for GNU make: a program hello.krl makes the executable hello. A makefile says which
# executables it wants, and includes this file:
#
#     all: hello
#     include /usr/share/krelcc/krel.mk
#
# KREL is the command, by its path; KRELFLAGS are options of "krel build".

ifndef KREL
KREL := $(abspath $(dir $(lastword $(MAKEFILE_LIST)))../../bin/krel)
endif

# A new compiler makes all executables anew.
%: %.krl $(KREL)
	$(KREL) build $(KRELFLAGS) -o $@ $<
