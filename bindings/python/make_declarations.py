#!/usr/bin/python3
"""Makes the module's declarations of the C interface out of its header.

make_declarations.py HEADER OUTPUT: OUTPUT is a Python source that needs neither a compiler nor the
header when the module is imported.
"""
import re
import sys

import cffi


def declarations(header: str) -> str:
    """What of the header declares something, as cffi reads it."""
    text = re.sub(r"/\*.*?\*/", "", header, flags=re.S)
    text = re.sub(r"#ifdef __cplusplus.*?#endif", "", text, flags=re.S)
    text = text.replace("OT95C_EXPORT ", "")
    lines = []
    for line in text.splitlines():
        number = re.match(r"#define (OT95\w+) (0x[0-9a-fA-F]+|\d+)\s*$", line)
        if number or not line.startswith("#"):
            lines.append(line)
    return "\n".join(lines)


def main(header: str, output: str) -> None:
    ffi = cffi.FFI()
    with open(header, encoding="utf-8") as file:
        ffi.cdef(declarations(file.read()))
    ffi.set_source("ot95._declarations", None)
    ffi.emit_python_code(output)


if __name__ == "__main__":
    main(*sys.argv[1:])
