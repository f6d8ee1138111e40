#!/usr/bin/env python3
"""Checks a JSON document against a schema. Usage: validate.py SCHEMA DOCUMENT"""

import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
with open(sys.argv[2], encoding="utf-8") as file:
    document = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
errors = list(jsonschema.Draft202012Validator(schema).iter_errors(document))
for error in errors[:10]:
    print(error.json_path, error.message[:200])
sys.exit(1 if errors else 0)
