"""check_lines.py SCHEMA < LINES: holds each JSON object against the schema; exit code 1 and the faults otherwise."""
import json
import sys

import jsonschema

schema = json.load(open(sys.argv[1], encoding="utf-8"))
jsonschema.Draft202012Validator.check_schema(schema)
# An event and a report have nothing in common; faults are told of the form that is meant.
forms = {name: jsonschema.Draft202012Validator({"$ref": f"#/$defs/{name}", "$defs": schema["$defs"]})
         for name in ("event", "last_line")}
kinds, faults = set(), 0
for number, line in enumerate(sys.stdin, 1):
    read = json.loads(line)
    form = "last_line" if "report" in read else "event"
    kinds.add(read.get("event", form))
    for fault in forms[form].iter_errors(read):
        faults += 1
        print(f"line {number}: {fault.json_path}: {fault.message}")
print(" ".join(sorted(kinds)))
sys.exit(1 if faults else 0)
