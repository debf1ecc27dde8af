#!/usr/bin/env python3
"""Receives what is sent to Hopboxes, in another language than the program's own.

Written from docs/formats/channel.md alone, for Linux. It prints a line of JSON for each message, and ends with
SIGTERM, SIGINT, or after as many messages as --count says. A real receiver does more: it writes each message down
before it raises the read position, looks about once a second whether senders still find it, and removes what dead
processes left.
"""

import argparse
import ctypes
import fcntl
import json
import mmap
import os
import random
import shutil
import signal
import stat
import struct
import sys
import tempfile

IMAGE = "PrinterProcessorWin.exe"
LENGTH_BITS = 0x3FFFFFFF
CAPACITY = 262144
QUEUE_HEADER = 64
DIRECTORY_SIZE = 3084
MOST_PAIRS = 384
LOCK_MAGIC, SEMAPHORE_MAGIC = 0x4B4C564D, 0x5353564D
DIRECTORY_MAGIC, QUEUE_MAGIC = 0x4450564D, 0x5150564D
EOWNERDEAD = 130
CLOCK_MONOTONIC = 1

libc = ctypes.CDLL(None, use_errno=True)


class TimeSpec(ctypes.Structure):
    _fields_ = [("seconds", ctypes.c_long), ("nanoseconds", ctypes.c_long)]

    @staticmethod
    def after(seconds):
        now = TimeSpec()
        libc.clock_gettime(CLOCK_MONOTONIC, ctypes.byref(now))
        return ctypes.byref(TimeSpec(now.seconds + seconds, now.nanoseconds))


def take_image_name():
    """Senders find receivers by the name of their image: this process becomes a copy of it under that name."""
    if os.path.basename(os.readlink("/proc/self/exe")).replace(" (deleted)", "") == IMAGE:
        shutil.rmtree(os.environ.pop("RECEIVER_IMAGE", ""), ignore_errors=True)
        return
    folder = tempfile.mkdtemp()
    image = shutil.copy(os.path.realpath("/proc/self/exe"), os.path.join(folder, IMAGE))
    environment = dict(os.environ, RECEIVER_IMAGE=folder, PYTHONHOME=sys.base_prefix)
    os.execve(image, [image] + sys.argv, environment)


def get_prefix():
    user = os.geteuid()
    root = os.environ.get("MORVANE_ROOT")
    if root:
        folder = os.path.join(root, f"Channel_{user}")
        os.makedirs(folder, mode=0o700, exist_ok=True)
        return f"{folder}/Morvane_{user}_"
    own = f"/run/user/{user}"
    if os.path.isdir(own) and not os.path.islink(own):
        status = os.stat(own)
        if status.st_uid == user and stat.S_IMODE(status.st_mode) == 0o700:
            return f"{own}/Morvane_{user}_"
    return f"/dev/shm/Morvane_{user}_"


def get_machine_start():
    with open("/proc/sys/kernel/random/boot_id") as file:
        return int(file.read().replace("-", "")[:6], 16)


def get_start_time(process):
    with open(f"/proc/{process}/stat") as file:
        fields = file.read().rpartition(")")[2].split()
    return (get_machine_start() << 40) + int(fields[22 - 3])


def remove(path):
    try:
        os.unlink(path)
    except FileNotFoundError:
        pass


class Segment:
    """A shared file in memory. `prepare` is called while the file is locked."""

    def __init__(self, path, size, prepare=None):
        self.path = path
        while True:
            flags = os.O_RDWR | os.O_CREAT | os.O_NOFOLLOW | os.O_CLOEXEC | os.O_NONBLOCK
            self.file = os.open(path, flags, 0o600)
            status = os.fstat(self.file)
            if not stat.S_ISREG(status.st_mode) or status.st_uid != os.geteuid() or status.st_mode & 0o077:
                raise OSError(f"{path} is not this user's own")
            fcntl.flock(self.file, fcntl.LOCK_EX)
            if self.is_current():
                break
            os.close(self.file)
        os.posix_fallocate(self.file, 0, size)
        self.memory = mmap.mmap(self.file, size)
        self.identity = os.fstat(self.file).st_ino
        if prepare:
            prepare(self)
        fcntl.flock(self.file, fcntl.LOCK_UN)

    def is_current(self):
        try:
            named, own = os.lstat(self.path), os.fstat(self.file)
        except FileNotFoundError:
            return False
        return (named.st_dev, named.st_ino) == (own.st_dev, own.st_ino)

    def get(self, form, offset):
        return struct.unpack_from("<" + form, self.memory, offset)[0]

    def put(self, form, offset, number):
        struct.pack_into("<" + form, self.memory, offset, number)

    def address(self, offset):
        return ctypes.c_void_p(ctypes.addressof(ctypes.c_char.from_buffer(self.memory, offset)))


class SharedObject(Segment):
    """A lock or a semaphore: 64 bytes, set up by whoever comes first."""

    def __init__(self, path, magic, set_up):
        def prepare(segment):
            start = get_machine_start()
            if segment.get("I", 0) not in (0, magic):
                raise OSError(f"{path} is damaged")
            known = (segment.get("I", 0), segment.get("Q", 8), segment.get("Q", 16))
            if known == (magic, start, segment.identity):
                return
            segment.put("I", 0, 0)
            set_up(segment.address(24))
            segment.put("I", 4, 2)
            segment.put("Q", 8, start)
            segment.put("Q", 16, segment.identity)
            segment.put("I", 0, magic)

        super().__init__(path, 64, prepare)


class Lock(SharedObject):
    def __init__(self, path):
        def set_up(mutex):
            attributes = ctypes.create_string_buffer(64)
            libc.pthread_mutexattr_init(attributes)
            libc.pthread_mutexattr_setpshared(attributes, 1)
            libc.pthread_mutexattr_setrobust(attributes, 1)
            libc.pthread_mutexattr_settype(attributes, 2)
            libc.pthread_mutex_init(mutex, attributes)

        super().__init__(path, LOCK_MAGIC, set_up)

    def __enter__(self):
        error = libc.pthread_mutex_clocklock(self.address(24), CLOCK_MONOTONIC, TimeSpec.after(3))
        if error == EOWNERDEAD:
            error = libc.pthread_mutex_consistent(self.address(24))
        if error:
            raise OSError(error, os.strerror(error), self.path)
        return self

    def __exit__(self, *_):
        libc.pthread_mutex_unlock(self.address(24))


class Semaphore(SharedObject):
    def __init__(self, path):
        super().__init__(path, SEMAPHORE_MAGIC, lambda semaphore: libc.sem_init(semaphore, 1, 0))

    def wait(self, seconds):
        libc.sem_clockwait(self.address(24), CLOCK_MONOTONIC, TimeSpec.after(seconds))


class Directory(Segment):
    """To be used under its lock only."""

    def __init__(self, path):
        super().__init__(path, DIRECTORY_SIZE)

    def check(self):
        header = struct.unpack_from("<III", self.memory, 0)
        if header == (0, 0, 0) or header[:2] != (DIRECTORY_MAGIC, 1) or header[2] > MOST_PAIRS:
            struct.pack_into("<III", self.memory, 0, DIRECTORY_MAGIC, 1, 0)

    def get_pairs(self):
        return [struct.unpack_from("<II", self.memory, 12 + 8 * at) for at in range(self.get("I", 8))]

    def add(self, pair):
        count = self.get("I", 8)
        if count == MOST_PAIRS:
            raise OSError("the directory is full")
        struct.pack_into("<II", self.memory, 12 + 8 * count, *pair)
        self.put("I", 8, count + 1)

    def remove(self, pair):
        for at in reversed(range(self.get("I", 8))):
            if self.get_pairs()[at] == pair:
                last = self.get("I", 8) - 1
                struct.pack_into("<II", self.memory, 12 + 8 * at, *self.get_pairs()[last])
                self.put("I", 8, last)


class Queue(Segment):
    def __init__(self, path):
        for name in (path, path + "_L", path + "_S"):
            remove(name)
        super().__init__(path, QUEUE_HEADER + CAPACITY)
        process = os.getpid()
        number = random.SystemRandom().getrandbits(64)
        struct.pack_into("<IIIQIIQQQQ", self.memory, 4, 3, process, 0, get_start_time(process), CAPACITY, 0, 0, 0, 0,
                         number)
        self.put("I", 0, QUEUE_MAGIC)
        self.lock = Lock(path + "_L")
        self.semaphore = Semaphore(path + "_S")

    def read(self, position, size):
        place = position % CAPACITY
        ring = self.memory[QUEUE_HEADER:]
        return (ring[place:] + ring[:place])[:size]

    def take(self):
        """The next entry, or None."""
        read, write = self.get("Q", 32), self.get("Q", 40)
        held = write - read
        if held == 0:
            return None
        length = struct.unpack("<I", self.read(read, 4))[0] if 4 <= held <= CAPACITY else held
        length &= LENGTH_BITS
        if length > held - 4:
            self.put("Q", 32, write)
            return None
        entry = self.read(read + 4, length)
        self.put("Q", 32, read + 4 + length)
        return entry

    def close(self):
        with self.lock:
            self.put("I", 12, 1)


class Receiver:
    NUMBER = 1

    def __init__(self):
        self.name = get_prefix() + "201_PP"
        self.pair = (os.getpid(), self.NUMBER)
        while True:
            self.lock = Lock(self.name + "_L")
            with self.lock:
                self.directory = Directory(self.name)
                if not self.lock.is_current():
                    continue
                self.directory.check()
                self.directory.remove(self.pair)
                self.directory.add(self.pair)
                self.queue = Queue("%s_%d_%d" % ((self.name,) + self.pair))
                return

    def take_all(self, most):
        count = 0
        while count < most:
            entry = self.queue.take()
            if entry is None:
                break
            count += self.tell(entry)
        return count

    def tell(self, entry):
        if len(entry) < 24:
            return 0
        session, process, receiver, kind, flag, length = struct.unpack_from("<IIIiII", entry)
        if length != len(entry) - 24 or receiver != self.NUMBER:
            return 0
        line = {"session": session, "process": process, "kind": kind, "flag": flag, "payload": entry[24:].decode()}
        print(json.dumps(line), flush=True)
        return 1

    def end(self, most):
        self.queue.close()
        self.take_all(most)
        with self.lock:
            for name in (self.queue.path, self.queue.path + "_L", self.queue.path + "_S"):
                remove(name)
            self.directory.remove(self.pair)
            if not self.directory.get_pairs():
                remove(self.name)
                remove(self.name + "_L")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=sys.maxsize, help="end after so many messages")
    rest = parser.parse_args().count
    take_image_name()
    stops = []
    for number in (signal.SIGTERM, signal.SIGINT):
        signal.signal(number, lambda *_: stops.append(True))
    receiver = Receiver()
    print(f"ready as process {os.getpid()}", file=sys.stderr, flush=True)
    while rest > 0 and not stops:
        receiver.queue.semaphore.wait(1)
        rest -= receiver.take_all(rest)
    receiver.end(rest)


if __name__ == "__main__":
    main()
