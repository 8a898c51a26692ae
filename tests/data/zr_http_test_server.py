#!/usr/bin/env python3
"""A small HTTP server for the tests: serves a directory on 127.0.0.1 and a few misbehaving routes.

Usage: zr_http_test_server.py <directory>
Prints the port it listens on as the first line of standard output. It ends when standard input
closes (the test went away), on SIGTERM, or after a fixed lifetime, whichever comes first.

Routes beside the files of the directory:
  /stall-headers          accepts the request and never answers
  /stall-body             sends headers and part of the body, then goes silent
  /big/<n>                a body of n bytes, "0123456789" repeated, sent in pieces
  /redirect/<path>        302 to /<path>
  /redirect-host/<h>/<p>  302 to http://<h>:<this port>/<p>, the same server under another host name
  /status/<code>          an empty response with that status
"""
import functools
import http.server
import os
import sys
import threading
import time

LIFETIME_SECONDS = 120
STALL_SECONDS = 20


class Handler(http.server.SimpleHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *args):
        pass

    def do_GET(self):
        path = self.path
        if path == "/stall-headers":
            time.sleep(STALL_SECONDS)
            return
        if path == "/stall-body":
            self.send_response(200)
            self.send_header("Content-Length", "1000")
            self.end_headers()
            self.wfile.write(b"<root>")
            self.wfile.flush()
            time.sleep(STALL_SECONDS)
            return
        if path.startswith("/big/"):
            size = int(path[len("/big/"):])
            self.send_response(200)
            self.send_header("Content-Length", str(size))
            self.end_headers()
            piece = b"0123456789" * 6553 + b"0123456"
            sent = 0
            while sent < size:
                chunk = piece[: min(len(piece), size - sent)]
                self.wfile.write(chunk)
                sent += len(chunk)
            return
        if path.startswith("/redirect-host/"):
            host, _, rest = path[len("/redirect-host/"):].partition("/")
            self.send_response(302)
            self.send_header("Location", "http://%s:%d/%s" % (host, self.server.server_address[1], rest))
            self.send_header("Content-Length", "0")
            self.end_headers()
            return
        if path.startswith("/redirect/"):
            self.send_response(302)
            self.send_header("Location", "/" + path[len("/redirect/"):])
            self.send_header("Content-Length", "0")
            self.end_headers()
            return
        if path.startswith("/status/"):
            self.send_response(int(path[len("/status/"):]))
            self.send_header("Content-Length", "0")
            self.end_headers()
            return
        super().do_GET()


def main():
    directory = sys.argv[1] if len(sys.argv) > 1 else os.getcwd()
    handler = functools.partial(Handler, directory=directory)
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
    server.daemon_threads = True
    print(server.server_address[1], flush=True)

    def end_when_stdin_closes():
        sys.stdin.read()
        os._exit(0)

    threading.Thread(target=end_when_stdin_closes, daemon=True).start()
    threading.Timer(LIFETIME_SECONDS, lambda: os._exit(0)).start()
    server.serve_forever()


if __name__ == "__main__":
    main()
