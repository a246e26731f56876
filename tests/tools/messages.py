"""Messages of krel's servers as they travel: JSON behind headers."""

import json


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
