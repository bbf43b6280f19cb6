// Where the probe's developer diagnostics go. The lines ("ERROR: ...", "[ERROR] ...") are part of
// the program's output; the reasons for declining a file are for people and cost nothing when
// nobody listens. One thread, as the whole probe.
#pragma once

namespace probe {

// Receives one complete text, its line end included. The default writes to standard output.
using DiagnosticSink = void (*)(const char* line);
// Null silences the lines. Returns the sink set before.
DiagnosticSink setDiagnosticSink(DiagnosticSink sink);

// Formats as printf does and hands the text to the sink; cut at 255 characters.
[[gnu::format(printf, 1, 2)]] void diagnose(const char* format, ...);

// Receives why a recogniser declined, in a few words without a line end. The default is null.
using ReasonSink = void (*)(const char* why);
ReasonSink setReasonSink(ReasonSink sink);

// What a recogniser returns when it declines: 0, after handing `why` to the reason sink.
int decline(const char* why);

}  // namespace probe
