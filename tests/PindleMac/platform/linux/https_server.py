"""An HTTPS server on loopback with certificates of its own, for tests of the URL session.

https_server.py FOLDER   makes ca.pem in FOLDER, appends each request's bytes to FOLDER/requests,
prints "PORT OTHERPORT" (the second has a certificate for another host) and ends with its input.
"""
import os
import socket
import ssl
import subprocess
import sys
import threading
import time

FOLDER = sys.argv[1]
LIFETIME = 300  # seconds, should nobody end it
LOCK = threading.Lock()


def openssl(*arguments):
    subprocess.run(["openssl", *arguments], cwd=FOLDER, check=True, capture_output=True)


def make_certificates():
    key = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"]
    openssl("req", "-x509", *key, "-keyout", "ca.key", "-out", "ca.pem", "-days", "2",
            "-subj", "/CN=Test authority", "-addext", "basicConstraints=critical,CA:TRUE")
    for name, host in (("server", "localhost"), ("other", "other.example")):
        with open(f"{FOLDER}/{name}.ext", "w") as file:
            file.write(f"subjectAltName=DNS:{host}\n")
        openssl("req", *key, "-keyout", f"{name}.key", "-out", f"{name}.csr", "-subj", f"/CN={host}")
        openssl("x509", "-req", "-in", f"{name}.csr", "-CA", "ca.pem", "-CAkey", "ca.key",
                "-CAcreateserial", "-days", "2", "-out", f"{name}.pem", "-extfile", f"{name}.ext")


def read_request(connection):
    data = b""
    while b"\r\n\r\n" not in data:
        data += connection.recv(65536) or b"\r\n\r\n"
    head, body = data.split(b"\r\n\r\n", 1)
    length = 0
    for line in head.split(b"\r\n"):
        if line.lower().startswith(b"content-length:"):
            length = int(line.split(b":")[1])
    while len(body) < length:
        body += connection.recv(65536)
    with LOCK, open(f"{FOLDER}/requests", "ab") as file:
        file.write(head + b"\r\n\r\n" + body + b"\n====\n")
    return head.split(b" ")[1].decode()


def reply(status, body=b"", *headers):
    lines = [f"HTTP/1.1 {status} Reason", f"Content-Length: {len(body)}", *headers]
    return "\r\n".join(lines).encode() + b"\r\n\r\n" + body


FIXED = {
    "/ok": reply(200, b'{"success":true}'),
    "/empty": reply(204),
    "/error": reply(500, b"  it broke \n"),
    "/blank": reply(503),
    "/bad": reply(400, b'{"error":"no"}'),
    "/unauthorized": reply(401, b"who are you", 'WWW-Authenticate: Basic realm="x"'),
    "/missing": reply(404, b"gone"),
    "/teapot": reply(418, b"tea"),
    "/cookie": reply(200, b"{}", "Set-Cookie: a=b; Max-Age=9999; Path=/"),
    "/garbage": b"\x00\x01 this is no HTTP\r\n\r\n\xff\xfe",
    "/cut": b"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nshort",
    "/close": b"",
    "/nowhere": reply(302, b"moved"),
}


def answer(connection, path):
    if path in FIXED:
        connection.sendall(FIXED[path])
    elif path.startswith("/to/"):  # /to/STATUS/TARGET
        _, _, status, target = path.split("/", 3)
        connection.sendall(reply(status, b"moved", "Location: " + target))
    elif path == "/silence":
        time.sleep(30)
    elif path == "/trickle":
        connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n")
        for _ in range(300):
            connection.sendall(b"x")
            time.sleep(0.05)
    elif path == "/slow":
        time.sleep(0.4)
        connection.sendall(FIXED["/ok"])
    elif path == "/huge":
        connection.sendall(b"HTTP/1.1 200 OK\r\n\r\n")
        for _ in range(1024):
            connection.sendall(b"x" * 65536)


def serve(raw, context):
    try:
        with context.wrap_socket(raw, server_side=True) as connection:
            connection.settimeout(30)
            answer(connection, read_request(connection))
            connection.unwrap()
    except OSError:
        pass
    finally:
        raw.close()


def listen(name):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(f"{FOLDER}/{name}.pem", f"{FOLDER}/{name}.key")
    listener = socket.create_server(("127.0.0.1", 0))

    def accept():
        while True:
            raw, _ = listener.accept()
            threading.Thread(target=serve, args=(raw, context), daemon=True).start()

    threading.Thread(target=accept, daemon=True).start()
    return listener.getsockname()[1]


make_certificates()
print(listen("server"), listen("other"), flush=True)
threading.Timer(LIFETIME, lambda: os._exit(0)).start()
sys.stdin.read()
os._exit(0)
