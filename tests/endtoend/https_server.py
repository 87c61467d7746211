"""An HTTPS server on the loopback interface with an authority of its own, whose next replies a test
chooses."""

import http.server
import os
import socket
import ssl
import subprocess
import threading
import time

SILENCE = 4.0  # seconds; longer than the program under test waits


def make_certificates(folder):
    """Paths of the authority's certificate, the server's certificate and its key."""
    def openssl(*arguments):
        subprocess.run(["openssl", *arguments], check=True, cwd=folder, timeout=60,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    openssl("req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
            "-keyout", "ca.key", "-out", "ca.pem", "-days", "2", "-subj", "/CN=Pindle test authority")
    openssl("req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
            "-keyout", "server.key", "-out", "server.csr", "-subj", "/CN=localhost")
    with open(os.path.join(folder, "names"), "w", encoding="ascii") as file:
        file.write("subjectAltName=DNS:localhost\n")
    openssl("x509", "-req", "-in", "server.csr", "-CA", "ca.pem", "-CAkey", "ca.key",
            "-CAcreateserial", "-out", "server.pem", "-days", "2", "-extfile", "names")
    return tuple(os.path.join(folder, name) for name in ("ca.pem", "server.pem", "server.key"))


class Server:
    """`reply` is (status, body) of every conversion, or "silence" or "hang up"."""

    def __init__(self, folder):
        self.authority, certificate, key = make_certificates(folder)
        self.reply = (200, b'{"success":true}')
        self.requests = []
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_POST(self):
                body = self.rfile.read(int(self.headers["Content-Length"]))
                outer.requests.append((self.path, dict(self.headers), body))
                if self.path.endswith("/on-install"):
                    self.answer(200, b'{"anonymized_key":"test-key"}')
                elif outer.reply == "silence":
                    time.sleep(SILENCE)
                    self.close_connection = True
                elif outer.reply == "hang up":
                    self.connection.shutdown(socket.SHUT_RDWR)
                    self.close_connection = True
                else:
                    self.answer(*outer.reply)

            def answer(self, status, body):
                self.send_response(status)
                self.send_header("Content-Type", "application/json")
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate, key)
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.server.daemon_threads = True
        self.server.socket = context.wrap_socket(self.server.socket, server_side=True)
        self.port = self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def conversions(self):
        return [request for request in self.requests if request[0].endswith("/text-conversion")]

    def close(self):
        self.server.shutdown()
        self.server.server_close()
