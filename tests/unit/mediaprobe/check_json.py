#!/usr/bin/env python3
"""Every JSON line of mediaprobe keeps to docs/mediaprobe.schema.json, and the schema is not looser
than the lines: each key that it lists comes, each line that is bent is refused.
Usage: check_json.py MEDIAPROBE PROBE_SAMPLES SCHEMA"""
import json
import os
import subprocess
import sys
import tempfile

import jsonschema

from expecting import expect, finish

probe, samples, schema_path = [os.path.abspath(path) for path in sys.argv[1:4]]

with open(schema_path, encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft7Validator.check_schema(schema)
validator = jsonschema.Draft7Validator(schema)

with tempfile.TemporaryDirectory() as work:
    subprocess.run([samples, work], check=True)
    odd = os.path.join(work.encode(), b'\xc7\xd1 "\\\n\x1b.mp4')
    os.link(os.path.join(work, "mp4_avc_and_aac"), odd)
    run = subprocess.run([probe, "--json", "-r", work, "missing.avi", work], capture_output=True,
                         check=False)
expect("the exit status", run.returncode == 2)
lines = [json.loads(line) for line in run.stdout.decode("utf-8").splitlines()]
expect("many lines", len(lines) > 300)
for line in lines:
    for error in validator.iter_errors(line):
        expect(f"{line['path']}: {error.message}", False)
keys = list(schema["properties"])
expect("the keys stand in the schema's order", all(list(line) == keys for line in lines))
expect("every key is required", sorted(schema["required"]) == sorted(keys))

by_name = {os.path.basename(line["path"]): line for line in lines}
good = by_name["mp4_avc_and_aac"]
expect("names of a good file", (good["containerName"], good["videoCodec"], good["audioCodec"],
                                good["damaged"], good["error"]) ==
       ("MP4/3GP", "H.264", "AAC", None, None))
nameless = [line for line in lines if line["videoFourCC"] == 0xFFFFFFFF]
expect("a picture of no known codec", nameless and
       all(line["videoCodec"] == "unknown" for line in nameless))
missing = by_name["missing.avi"]
expect("an error as data", missing["error"] == "there is no such file" and
       missing["open"] == "0x80070002" and missing["containerName"] is None)
expect("a damaged file has a reason",
       by_name["avi_4097_zero_headers_fail"]["damaged"] is not None)

bent = [("containerType", 12), ("containerType", -1), ("open", "0x8007000g"), ("open", 0),
        ("status", "0x1"), ("durationSeconds", 1.5), ("audioBitRate", 2**32), ("title", None),
        ("title", "x" * 128), ("hasTitle", 2), ("genreIndex", -2), ("genreIndex", 255),
        ("containerName", "Matroska"), ("videoCodec", ""), ("damaged", False), ("error", ""),
        ("fileSizeHigh", 1), ("path", 3)]
for key, value in bent:
    expect(f"{key} = {value!r} is refused", not validator.is_valid({**good, key: value}))
expect("another key is refused", not validator.is_valid({**good, "more": 1}))
for key in keys:
    expect(f"a line without {key} is refused",
           not validator.is_valid({k: v for k, v in good.items() if k != key}))

finish()
