# A throw-away FTP server for the tests, on 127.0.0.1 only; prints its port, then serves.
#   /usr/bin/python3 ftp_test_server.py ROOT PORT ENCODING [nostore]
# PORT 0 takes a free port. Users: "qm"/"secret" may do everything, "viewer"/"secret"
# may only read, anonymous may do everything. ENCODING is the file names' code page on
# the wire ("utf8" or "gbk"); the disk keeps UTF-8 names. With "nostore", nobody may
# store files in the directory ROOT/nostore, though deleting and renaming are allowed.
# An upload whose bytes begin with "CUTONCE" is cut to half its length the first time
# those bytes arrive, one beginning with "CUTALWAYS" every time: a transfer the server
# took short without a word.
import warnings

warnings.simplefilter("ignore")

import asynchat  # noqa: E402
import logging  # noqa: E402
import os  # noqa: E402
import sys  # noqa: E402

from pyftpdlib.authorizers import DummyAuthorizer  # noqa: E402
from pyftpdlib.filesystems import AbstractedFS  # noqa: E402
from pyftpdlib.handlers import FTPHandler  # noqa: E402
from pyftpdlib.servers import FTPServer  # noqa: E402

root, port, wire = sys.argv[1], int(sys.argv[2]), sys.argv[3]


class WireFS(AbstractedFS):
    def format_list(self, *args, **kwargs):
        for line in super().format_list(*args, **kwargs):
            yield line.decode("utf8", "replace").encode(wire, "replace")

    def format_mlsx(self, *args, **kwargs):
        for line in super().format_mlsx(*args, **kwargs):
            yield line.decode("utf8", "replace").encode(wire, "replace")


class WireHandler(FTPHandler):
    abstracted_fs = WireFS

    def decode(self, data):
        return data.decode(wire, self.unicode_errors)

    def push(self, s):
        asynchat.async_chat.push(self, s.encode(wire, "replace"))

    cut_seen = set()

    def on_file_received(self, file):
        # Another session may have renamed or removed the file meanwhile.
        try:
            with open(file, "rb") as f:
                head = f.read(9)
                if not (head.startswith(b"CUTONCE") or head == b"CUTALWAYS"):
                    return
                f.seek(0)
                data = f.read()
            once = data.startswith(b"CUTONCE") and data not in WireHandler.cut_seen
            if once or data.startswith(b"CUTALWAYS"):
                WireHandler.cut_seen.add(data)
                with open(file, "wb") as f:
                    f.write(data[: len(data) // 2])
        except OSError:
            pass


logging.basicConfig(level=logging.CRITICAL)
authorizer = DummyAuthorizer()
authorizer.add_user("qm", "secret", root, perm="elradfmwMT")
authorizer.add_user("viewer", "secret", root, perm="elr")
authorizer.add_anonymous(root, perm="elradfmw")
if len(sys.argv) > 4 and sys.argv[4] == "nostore":
    for user in ("qm", "anonymous"):
        authorizer.override_perm(user, os.path.join(root, "nostore"), "elradfm", True)
WireHandler.authorizer = authorizer
WireHandler.banner = "qm test server"
WireHandler.auth_failed_timeout = 0
server = FTPServer(("127.0.0.1", port), WireHandler)
print(server.address[1], flush=True)

# A test that dies must not leave its server behind holding ctest's output
# open: the server leaves when its parent is gone.
def _watch_parent(parent=os.getppid()):
    import threading
    import time

    def watch():
        while os.getppid() == parent:
            time.sleep(0.5)
        os._exit(0)

    threading.Thread(target=watch, daemon=True).start()


_watch_parent()
server.serve_forever(handle_exit=True)
