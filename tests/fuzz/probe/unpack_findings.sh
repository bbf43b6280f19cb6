#!/bin/sh
# Unpacks what fuzzing has found into FOLDER, for the replay beside the samples.
# Usage: unpack_findings.sh FOLDER
set -eu
for finding in "$(dirname "$0")"/findings/*.gz; do
    gzip -dc "$finding" >"$1/$(basename "$finding" .gz)"
done
