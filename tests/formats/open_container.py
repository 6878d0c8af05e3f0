#!/usr/bin/python3
"""Opens a container with none of the program's own code.

open_container.py CONTAINER PASSWORD_HEX [OUTPUT]: PASSWORD_HEX is the password's UTF-8 bytes in hexadecimal. Prints the
length and the SHA-256 of the plaintext, and writes it to OUTPUT. Exit status 2 when the key or a byte is wrong, 3 when the
file is no container.
"""

import hashlib
import sys

from cryptography.exceptions import InvalidTag
from cryptography.hazmat.primitives import hashes
from cryptography.hazmat.primitives.ciphers.aead import AESGCM
from cryptography.hazmat.primitives.kdf.hkdf import HKDF


def open_container(data, password):
    if len(data) < 70 or data[:10] != b"QUILLHAVEN":
        raise ValueError("no container")
    key = HKDF(hashes.SHA256(), length=32, salt=data[10:42], info=b"").derive(password)
    return AESGCM(key).decrypt(data[42:54], data[54:], None)


def main():
    with open(sys.argv[1], "rb") as container:
        data = container.read()
    try:
        plaintext = open_container(data, bytes.fromhex(sys.argv[2]))
    except InvalidTag:
        sys.exit(2)
    except ValueError:
        sys.exit(3)
    print(len(plaintext), hashlib.sha256(plaintext).hexdigest())
    if len(sys.argv) > 3:
        with open(sys.argv[3], "wb") as output:
            output.write(plaintext)


if __name__ == "__main__":
    main()
