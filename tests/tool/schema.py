#!/usr/bin/python3
# Usage: schema.py SIPUTIL SCHEMA DATA
# Holds what every command of siputil prints with --json against its definition in the schema, and
# so the output that the cases beside this file expect.
import glob
import json
import os
import subprocess
import sys

import jsonschema

siputil, schema_file, data = sys.argv[1:]
with open(schema_file, encoding="utf-8") as file:
    SCHEMA = json.load(file)
jsonschema.Draft202012Validator.check_schema(SCHEMA)


def run(*arguments, stdin=None):
    return subprocess.run([siputil, *arguments], input=stdin, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, check=False).stdout.decode("utf-8")


def read(name):
    with open(f"{data}/{name}", "rb") as file:
        return file.read()


def messages(pattern):
    return sorted(glob.glob(f"{data}/messages/{pattern}.sip"))


def expected():
    """Returns each line of JSON that a case expects, with the command."""
    found = []
    for name in sorted(glob.glob(f"{os.path.dirname(__file__)}/*.case")):
        with open(name, encoding="utf-8") as file:
            lines = file.read().split("\n")
        command = next(line for line in lines if line.startswith("$")).split()[1:2]
        found += [(command[0], json.loads(line[2:])) for line in lines if line.startswith("> {")]
    return found


MULTIPART = (b"MESSAGE sip:a SIP/2.0\r\nVia: SIP/2.0/TLS a\r\nFrom: <tel:+1>\r\nc: multipart/mixed;"
             b"boundary=b\r\n\r\nA\r\n--b\r\nTo: <sip:a>\r\n\r\n\xff\r\n--b\r\n\r\n--b--\r\nE")
BODY = MULTIPART.partition(b"\r\n\r\n")[2]
TYPE = "--type=multipart/mixed;boundary="

# The arguments and the standard input of each command.
RUNS = {
    "address": [(["-"], read("address.txt")), (["*"], None)],
    "tel": [(["-"], read("tel.txt")), (["tel:+1", "--to-sip=sip:a.test"], None)],
    "header": [(["-"], read("header.txt")), (["no colon"], None)],
    "message": [(messages("*"), None), (["-"], MULTIPART), (["-"], b"\n"), (["-"], b"x")],
    "list": [(messages("*"), None), (["-"], MULTIPART), (["-"], b"x")],
    "check": [(messages("*"), None), (messages("prack"), None), (["-"], MULTIPART)],
    "calls": [(messages("*"), None), ([f"{data}/calls.sip", "--stats"], None),
              ([f"{data}/calls.sip", "--show=f3"], None)],
    "body": [([TYPE + "b"], BODY), ([TYPE + "c"], BODY),
             ([TYPE + "b"], b"--b\r\n\r\n" + bytes(65537) + b"--b--")],
    "via": [(["SIP/2.0/UDP a.test;x=y"], None), (["x"], None)],
    "compare": [(["sip:a@b", "sip:a@b"], None), (["sip:a@b", "sip:a@c"], None)],
    "host": [(["::1"], None), (["x"], None)],
    "quote": [(["sip:a:b@c.test", "x"], None)],
    "feature-tag": [(['a;t="x:y"', "t"], None), (["a", "t"], None)],
    "sort": [(["b;a"], None)],
    "max-q": [(["0.1", "0.2"], None), (["x"], None)],
    "imei": [(["123456789012345"], None), (["1"], None)],
}

CASES = expected()
wrong = 0
lines = run("--help").partition("Commands:\n")[2].splitlines()
for command in [line.split()[0] for line in lines]:
    if "--json" not in run(command, "--help"):
        continue
    validator = jsonschema.Draft202012Validator({**SCHEMA, "$ref": f"#/$defs/{command}"})
    objects = []
    for arguments, stdin in RUNS[command]:
        # Only "\n" ends an object, not the other line ends of Unicode.
        printed = run(command, "--json", *arguments, stdin=stdin).split("\n")[:-1]
        objects += [json.loads(line) for line in printed]
    objects += [instance for name, instance in CASES if name == command]
    for instance in objects:
        for error in validator.iter_errors(instance):
            wrong += 1
            print(f"{command}: {error.json_path}: {error.message}\n  {json.dumps(instance)}")
    # A definition that accepts everything would check nothing.
    if not objects or validator.is_valid({}) or validator.is_valid({**objects[0], "extra": 1}):
        wrong += 1
        print(f"{command}: nothing printed, or the schema takes any object")
    print(f"{command}: {len(objects)} objects")
sys.exit(1 if wrong else 0)
