"""Asks the loaded library to decompose files, by way of the program events_of.

The program runs as a child: a call that never returns is ended with it, and the next question starts another.
"""

import queue
import subprocess
import threading

DID_NOT_RETURN = "did not return"


class Answer:
    """`lines`: the events that the handler saw. `status`, `message`: the result list. `position`: of the host's
    stream after the call, from 1. A call that does not return has the message DID_NOT_RETURN."""

    def __init__(self, lines, status, position, message):
        self.lines = lines
        self.status = status
        self.position = position
        self.message = message


class LoadedLibrary:
    def __init__(self, command):
        self._command = command
        self._process = None
        self._lines = None

    def decompose(self, path, syntax, offset=0, only_group=0, seconds=60):
        """Decomposes the file at `path` from byte `offset` on. With `only_group` a client object stops the call at
        the first tag of another group."""
        if self._process is None:
            self._start()
        self._process.stdin.write(f"{offset}\t{only_group}\t{syntax}\t{path}\n")
        self._process.stdin.flush()
        lines = []
        while True:
            try:
                line = self._lines.get(timeout=seconds)
            except queue.Empty:
                self.close()
                return Answer(lines, None, None, DID_NOT_RETURN)
            if line is None:
                code = self._process.wait()
                self.close()
                return Answer(lines, None, None, f"the process ended with {code}")
            if line.startswith("Answer "):
                _, status, position, message = line.split(" ", 3)
                return Answer(lines, int(status), int(position), message)
            lines.append(line)

    def close(self):
        if self._process is not None:
            self._process.kill()
            self._process.stdin.close()
            self._process.wait()
            self._process = None

    def _start(self):
        self._process = subprocess.Popen(
            self._command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, encoding="latin-1"
        )
        self._lines = queue.Queue()
        threading.Thread(target=_read, args=(self._process.stdout, self._lines), daemon=True).start()


def _read(output, lines):
    with output:
        for line in output:
            lines.put(line.rstrip("\r\n"))
    lines.put(None)
