#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""https_server.py FOLDER: an HTTPS server on this machine that behaves well or badly, as the path of a request says.

It makes its certificates in FOLDER, whose `authority.pem` a client has to trust, and prints its ports as a line of JSON.
Then it prints a line for each request that it has received ("got /path") and for each connection that a client has closed
before the response was complete ("lost /path"). It ends when its standard input does.
"""
import http.server
import json
import os
import select
import socket
import ssl
import subprocess
import sys
import threading

MANIFEST = {'app': {'version': '9.10.0', 'download_url': 'https://downloads.example/quillhaven', 'release_notes': 'Better.',
                    'published_at': '2026-11-01', 'is_prerelease': False}}


def say(line):
    sys.stdout.write(line + '\n')
    sys.stdout.flush()


def openssl(*arguments):
    subprocess.run(['openssl', *arguments], check=True, capture_output=True)


def make_authority(folder, name):
    openssl('req', '-x509', '-newkey', 'ec', '-pkeyopt', 'ec_paramgen_curve:P-256', '-nodes', '-days', '2',
            '-subj', '/CN=' + name, '-keyout', f'{folder}/{name}.key', '-out', f'{folder}/{name}.pem')


def make_certificate(folder, name, authority, host, days):
    with open(f'{folder}/{name}.extensions', 'w', encoding='ascii') as file:
        file.write('subjectAltName=' + host)
    openssl('req', '-newkey', 'ec', '-pkeyopt', 'ec_paramgen_curve:P-256', '-nodes', '-subj', '/CN=' + name,
            '-keyout', f'{folder}/{name}.key', '-out', f'{folder}/{name}.request')
    openssl('x509', '-req', '-in', f'{folder}/{name}.request', '-CA', f'{folder}/{authority}.pem',
            '-CAkey', f'{folder}/{authority}.key', '-CAcreateserial', '-days', days,
            '-extfile', f'{folder}/{name}.extensions', '-out', f'{folder}/{name}.pem')


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = 'HTTP/1.1'

    def do_GET(self):
        say('got ' + self.path)
        try:
            self.respond(*self.path[1:].split('/'))
        except OSError:
            self.lost()

    def respond(self, kind, *words):
        if kind == 'status':
            self.send(int(words[0]), b'status ' + words[0].encode())
        elif kind == 'manifest':
            self.send(200, json.dumps(MANIFEST).encode())
        elif kind == 'redirects':
            count = int(words[0])
            self.redirect(f'/redirects/{count - 1}' if count > 1 else '/status/200')
        elif kind == 'loop':
            self.redirect('/loop')
        elif kind == 'plain':
            self.redirect('http://localhost:%d/status/200' % self.server.plain_port)
        elif kind == 'headers':
            self.send(200, json.dumps(list(self.headers.items())).encode(), ('Set-Cookie', 'visited=1'))
        elif kind == 'password':
            self.send(401, b'password?', ('WWW-Authenticate', 'Basic realm="x"'))
        elif kind == 'bytes':
            self.send(200, b'x' * int(words[0]))
        elif kind == 'endless':
            self.send_endlessly()
        elif kind == 'drip':
            self.drip()
        elif kind == 'cut':
            self.begin(200, 100)
            self.wfile.write(b'x' * 10)
            self.close_connection = True
        elif kind == 'silent':
            self.wait_for_loss()

    def begin(self, status, length, *headers):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        if length is None:
            self.send_header('Connection', 'close')
        else:
            self.send_header('Content-Length', str(length))
        self.end_headers()

    def send(self, status, body, *headers):
        self.begin(status, len(body), *headers)
        self.wfile.write(body)

    def redirect(self, address):
        self.send(302, b'', ('Location', address))

    def send_endlessly(self):
        self.begin(200, None)
        while True:
            self.wfile.write(b'x' * 65536)

    def drip(self):
        self.begin(200, None)
        while not select.select([self.connection], [], [], 0.01)[0]:
            self.wfile.write(b'x')
        self.lost()

    def wait_for_loss(self):
        select.select([self.connection], [], [])
        self.lost()

    def lost(self):
        self.close_connection = True
        say('lost ' + self.path)

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_):  # a client that does not accept the certificate
        pass


def serve(plain_port, certificate=None):
    server = Server(('localhost', 0), Handler)
    server.plain_port = plain_port
    if certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate + '.pem', certificate + '.key')
        server.socket = context.wrap_socket(server.socket, server_side=True, do_handshake_on_connect=False)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server.server_address[1]


def accept_and_say_nothing(listener):
    kept = []
    while True:
        kept.append(listener.accept())
        say('accepted')


def main():
    folder = sys.argv[1]
    make_authority(folder, 'authority')
    make_authority(folder, 'stranger')
    certificates = {'trusted': ('authority', 'DNS:localhost', '1'), 'foreign': ('stranger', 'DNS:localhost', '1'),
                    'misnamed': ('authority', 'DNS:another.example', '1'), 'expired': ('authority', 'DNS:localhost', '-1')}
    plain_port = serve(None)
    ports = {'plain': plain_port}
    for name, (authority, host, days) in certificates.items():
        path = os.path.join(folder, name)
        make_certificate(folder, name, authority, host, days)
        ports[name] = serve(plain_port, path)
    mute = socket.create_server(('localhost', 0))
    ports['mute'] = mute.getsockname()[1]
    threading.Thread(target=accept_and_say_nothing, args=[mute], daemon=True).start()
    say(json.dumps(ports))
    sys.stdin.read()


main()
