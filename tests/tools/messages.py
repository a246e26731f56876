"""What the tests of krel's servers share: messages as they travel, JSON behind headers, and the
process at the other end."""

import json
import queue
import subprocess
import threading


def framed(body):
    """A message as it is sent; the body is text, bytes, or what becomes JSON."""
    if not isinstance(body, (str, bytes)):
        body = json.dumps(body)
    if isinstance(body, str):
        body = body.encode()
    return b"Content-Length: %d\r\n\r\n%s" % (len(body), body)


def read_message(stream):
    """The next message of a stream as JSON; None at its end."""
    length = None
    while True:
        line = stream.readline()
        if not line:
            return None
        if line == b"\r\n":
            break
        name, value = line.split(b":")
        if name == b"Content-Length":
            length = int(value)
    return json.loads(stream.read(length))


class Server:
    """A server of krel on pipes, and a thread that takes down what it says. To be closed."""

    def __init__(self, command, patience, environment=None):
        self.patience = patience  # in seconds
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, env=environment)
        self.messages = queue.Queue()  # the last one is None
        self.thread = threading.Thread(target=self.listen, daemon=True)
        self.thread.start()

    def listen(self):
        while True:
            message = read_message(self.process.stdout)
            self.messages.put(message)
            if message is None:
                return

    def close(self):
        """Ends the server at once."""
        self.process.kill()
        self.process.wait()
        self.thread.join(self.patience)
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            try:
                stream.close()
            except BrokenPipeError:
                pass

    def send_bytes(self, data):
        self.process.stdin.write(data)
        self.process.stdin.flush()
