"""Fails, and says why, if the JSON text on standard input does not follow a schema.

Usage: validate.py SCHEMA
"""

import json
import pathlib
import sys

import jsonschema

jsonschema.Draft4Validator(json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
                           ).validate(json.load(sys.stdin))
