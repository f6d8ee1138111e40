"""A client of "dcm lsp", with Python's own library only."""
import json
import subprocess


class Client:
    def __init__(self, dcm):
        self.process = subprocess.Popen([dcm, "lsp"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.last = 0

    def send(self, **message):
        content = json.dumps(dict(message, jsonrpc="2.0")).encode()
        self.process.stdin.write(b"Content-Length: %d\r\n\r\n" % len(content) + content)
        self.process.stdin.flush()

    def receive(self):
        length = 0
        for line in iter(self.process.stdout.readline, b""):
            if not line.strip():
                return json.loads(self.process.stdout.read(length))
            name, value = line.split(b":")
            length = int(value) if name == b"Content-Length" else length
        raise AssertionError("the server has ended")

    def notify(self, method, **params):
        self.send(method=method, params=params)

    def request(self, method, **params):
        self.last += 1
        self.send(id=self.last, method=method, params=params)
        while True:
            message = self.receive()
            if message.get("id") == self.last:
                return message

    def diagnostics(self):
        while True:
            message = self.receive()
            if message.get("method") == "textDocument/publishDiagnostics":
                return message["params"]["diagnostics"]

    def end(self):
        self.request("shutdown")
        self.notify("exit")
        return self.process.wait(20)
