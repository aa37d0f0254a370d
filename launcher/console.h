// Console and debug-log output of the launcher.
#pragma once

#include <cstdio>

#include "launcher/settings.h"

namespace qorvel {

// How messages are shown, process-wide. Written by main (fDebug, LoggerLog)
// and by the option scan (-o, -m, and a bad option, which makes it verbose);
// read by every message.
struct ConsoleState {
    int fDebug = 0;                              // the "-g" pre-scan
    FILE* LoggerLog = nullptr;                   // the debug log, open while fDebug is set
    char outputDesc[kPathFieldSize] = "stderr";  // console destination
    bool verbose = true;  // failure and progress messages are shown (-m verbose, the default)
};

extern ConsoleState console;

inline bool verbose() { return console.verbose; }

// Shows one message on the console selected by outputDesc ("stderr": plain
// text on standard error; "stdout": a tagged line; anything else: nothing) and
// copies it to the debug log. A non-zero `code` appends the system's text for it.
// Every message ends with a line end.
void outMessage(int code, const char* format, ...) __attribute__((format(printf, 2, 3)));

// outMessage(0, ...) when verbose: progress and failure reports.
void report(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The failure of a system call, in verbose mode: `format` carries one %d for
// `code`, and the system's text for it follows. Returns `code`.
int report_failure(int code, const char* format);

// One unstamped, flushed line in the debug log when debugging is on.
void trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Keeps close-on-exec copies of descriptors 1 and 2 as the caller passed them.
void keep_caller_console();

// report(), on the caller's own console when a redirection has replaced it
// since: what went wrong after -1 or -2 must still reach whoever started us.
void tell_caller(int code, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace qorvel
