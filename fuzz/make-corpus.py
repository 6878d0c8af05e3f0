#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the seeds of the fuzzers anew: one small valid input of each kind, and the broken ones at each edge."""
import json
import os
import sqlite3
import struct
import tempfile

from cryptography.hazmat.primitives import hashes
from cryptography.hazmat.primitives.ciphers.aead import AESGCM
from cryptography.hazmat.primitives.kdf.hkdf import HKDF

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'corpus')
SALT = bytes(range(32))
NONCE = bytes(range(12))
PASSWORD = b'Masterkey9'


def write(folder, name, data):
    with open(os.path.join(ROOT, folder, name), 'wb') as file:
        file.write(data)


def sealed(plain):
    key = HKDF(hashes.SHA256(), 32, SALT, b'').derive(PASSWORD)
    return NONCE + AESGCM(key).encrypt(NONCE, plain, None)


def backup(metadata, plain):
    return b'RECOVERY' + SALT + struct.pack('<I', len(metadata)) + metadata + sealed(plain)


def backups():
    folder = 'decrypt_backup_file'
    metadata = b'11111111-2222-4333-8444-555555555555:report.pdf'
    whole = backup(metadata, b'the plain text')
    write(folder, 'backup', whole)
    write(folder, 'empty-plaintext', backup(metadata, b''))
    write(folder, 'no-metadata', backup(b'', b'x'))
    write(folder, 'cut-in-tag', whole[:-5])
    write(folder, 'cut-in-metadata', whole[:60])
    write(folder, 'magic-alone', b'RECOVERY')
    write(folder, 'forty-four', whole[:44])
    write(folder, 'forty-five', whole[:40] + struct.pack('<I', 1) + b'x')
    write(folder, 'longest-length', whole[:40] + b'\xff' * 4 + whole[44:])
    write(folder, 'zeros', bytes(200))
    write(folder, 'container', b'QUILLHAVEN' + SALT + sealed(b'old'))
    write(folder, 'container-cut', b'QUILLHAVEN' + SALT)
    write(folder, 'folder-marker', b'FOLDER:/home/somebody/x')
    names = 'recovery_name'
    for name, text in (('plain', metadata), ('colon', b'id:a:b'), ('path', b'id:../../.profile'), ('none', b'id'),
                       ('empty', b'id:'), ('dots', b'id:..'), ('emoji', 'id:\U0001f4c4.txt'.encode()),
                       ('invalid', b'id:\xff\xfe'), ('null', b'id:a\0b')):
        write(names, name, backup(text, b'x'))
    write(names, 'past-end', whole[:40] + struct.pack('<I', len(whole)) + whole[44:])


def catalogues():
    item = dict(id='1', originalName='a.txt', originalPath='/home/a.txt', containerPath='/d/a.txt.secured',
                originalBackupPath='/s/1_original', isFolder=False, useTouchID=True, isMounted=True,
                mountedPath='/home/a.txt', isProcessing=False)
    locked = {k: v for k, v in item.items() if k != 'mountedPath'}
    for name, value in (('none', []), ('one', [item]), ('two', [locked, item]), ('unicode', [dict(item, id='é\U0001f512')]),
                        ('further-key', [dict(item, more={'a': [1, 2.5, None]})]), ('wrong-type', [dict(item, id=3)]),
                        ('object', item)):
        write('catalogue_json', name, json.dumps(value).encode())
    write('catalogue_json', 'lone-surrogate', json.dumps([dict(item, id='\ud800')]).encode())


def stores():
    for name, kind, value in (('bool', b'bool', b'1'), ('integer', b'integer', b'-9223372036854775808'),
                              ('double', b'double', b'0.1'), ('string', b'string', 'é'.encode()),
                              ('data', b'data', b'\0\1'), ('date', b'date', b'2026-11-21T08:00:00.000Z'),
                              ('dictionary', b'dictionary', b'{"a":[1,{"b":null}]}'), ('other', b'blob', b'')):
        write('store_values', name, b'\0' + kind + b':' + value)
    write('store_values', 'not-a-database', b'\1this is no database')
    write('store_values', 'empty-file', b'\1')
    with tempfile.TemporaryDirectory() as home:
        path = os.path.join(home, 'x.db')
        with sqlite3.connect(path) as connection:
            connection.execute('PRAGMA page_size = 512')
            connection.execute('CREATE TABLE defaults (key TEXT PRIMARY KEY, type TEXT NOT NULL, value BLOB)')
            connection.execute("INSERT INTO defaults VALUES ('value', 'bool', x'31')")
        with open(path, 'rb') as file:
            write('store_values', 'database', b'\1' + file.read())


def rules():
    folder = 'smart_auto_lock_rules'
    whole = {'lockOnSleep': True, 'lockOnLogout': True, 'lockOnUserSwitch': True, 'lockOnScreenSaver': False,
             'lockOnSystemLock': True, 'enhancedIdleDetection': True, 'idleThresholdMinutes': 5, 'exceptions': ['a']}
    write(folder, 'defaults', json.dumps(whole).encode())
    write(folder, 'no-exceptions', json.dumps({k: v for k, v in whole.items() if k != 'exceptions'}).encode())
    write(folder, 'further-key', json.dumps({**whole, 'further': None}).encode())
    write(folder, 'fraction', json.dumps({**whole, 'idleThresholdMinutes': 1.5}).encode())
    write(folder, 'large-number', json.dumps({**whole, 'idleThresholdMinutes': 2 ** 63 - 1}).encode())
    write(folder, 'list', b'[]')


def manifests():
    folder = 'update_manifest'
    app = {'version': '1.10.0-beta2', 'download_url': 'https://downloads.example/quillhaven', 'release_notes': 'é\n"\U0001f512"',
           'published_at': '2026-11-01', 'is_prerelease': False}
    write(folder, 'whole', json.dumps({'app': app}).encode())
    write(folder, 'no-app', b'{}')
    write(folder, 'no-version', json.dumps({'app': {k: v for k, v in app.items() if k != 'version'}}).encode())
    write(folder, 'further-key', json.dumps({'app': {**app, 'size': 3}, 'more': [1, {'a': None}]}).encode())
    write(folder, 'wrong-type', json.dumps({'app': {**app, 'is_prerelease': 'no'}}).encode())
    write(folder, 'long-number', json.dumps({'app': {**app, 'version': '00' + '9' * 40 + '.1'}}).encode())
    write(folder, 'lone-surrogate', json.dumps({'app': {**app, 'version': '1\ud800'}}).encode())
    write(folder, 'list', b'[]')
    write(folder, 'page', b'<!DOCTYPE html>')


if __name__ == '__main__':
    backups()
    catalogues()
    stores()
    rules()
    manifests()
