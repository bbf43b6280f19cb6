#include "probe/record/diagnostics.h"

#include <cstdarg>
#include <cstdio>

namespace probe {
namespace {

void writeToStandardOutput(const char* line) {
    std::fputs(line, stdout);
}

constinit DiagnosticSink diagnosticSink = writeToStandardOutput;
constinit ReasonSink reasonSink = nullptr;

}  // namespace

DiagnosticSink setDiagnosticSink(DiagnosticSink sink) {
    const DiagnosticSink before = diagnosticSink;
    diagnosticSink = sink;
    return before;
}

void diagnose(const char* format, ...) {
    if (!diagnosticSink) {
        return;
    }
    char line[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    diagnosticSink(line);
}

ReasonSink setReasonSink(ReasonSink sink) {
    const ReasonSink before = reasonSink;
    reasonSink = sink;
    return before;
}

int decline(const char* why) {
    if (reasonSink) {
        reasonSink(why);
    }
    return 0;
}

}  // namespace probe
