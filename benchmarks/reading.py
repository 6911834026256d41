# SPDX-License-Identifier: MIT
"""Measures the program that reads logs, beside `wc -l` on the same file in the page cache.

    reading.py PROGRAM LOG BYTES

makes LOG with about BYTES bytes, which resembles a real session: a camera's description read in one
go, then frames, each with its wait, questions, port reads and its queueing. Prints a table, and a line
that starts with MISSED for each bar that isn't kept.
"""

import os
import subprocess
import sys
import time

# Times of `wc -l`, and MB of memory.
BARS = {"report": 12, "check": 12, "show": 20, "export": 30, "html": 30}
MOST_OF_A_PAGE = 5_000_000  # bytes
MOST_MEMORY = 150
ROUNDS = 3


def dump(first: int, size: int) -> str:
    items = [f"0x{(first + i) & 0xFF:02x}" for i in range(size)]
    lines = [",".join(items[i : i + 16]) for i in range(0, size, 16)]
    return ",\n".join(lines)


class Log:
    def __init__(self, file):
        self.file, self.time, self.size = file, 0, 0

    def line(self, message: str, step: int = 0) -> None:
        self.time += step
        seconds, ms = divmod(self.time, 1000)
        clock = time.strftime("%Y-%m-%d %H:%M:%S", time.gmtime(1795262400 + seconds))
        text = f"{clock}.{ms:03} [140566109555904] INFO  GC_ERR_SUCCESS={message}\n"
        self.size += len(text)
        self.file.write(text)


def open_session(log: Log) -> None:
    log.line("GCInitLib(void)")
    log.line("TLOpen(0x00007FFEB7F62100->(pHandle=0x000055B586E330B0))")
    log.line("TLOpenInterface(hTL=0x000055B586E330B0, 0x000055B586E28350->(sInterfaceName=eth), "
             "0x00007FFEB7F620D0->(hInterface=000055B586E330B8))")
    log.line("IFOpenDevice(hInterface=0x000055B586E330B8, 0x000055B586E28350->(sDevName=cam), "
             "iOpenFlags=DEVICE_ACCESS_CONTROL, 0x00007FFEB7F620D0->(hDev=0x86e2e930))", 100)
    log.line("DevGetPort(hDev=0x000055B586E2E930, 0x00007FFEB7F620D0->(pPort=0x000055B586E2EC38))")
    log.line("GCReadPort(hPort=0x000055B586E2EC38, iAddress=0xf0000000, "
             f"0x000055B586E3C750->(Buffer=,{dump(0, 51685)}), 0x00007FFEB7F62118->(iSize=51685)", 16)
    log.line("DevOpenDataStream(hDev=0x000055B586E2E930, 0x000055B586E0CF00->(pID=default), "
             "0x00007FFEB7F620D0->(hDS=0x000055B586E31000))")
    for i in range(5):
        log.line(f"DSAnnounceBuffer(hDS=0x000055B586E31000, pBuffer=0x00007FD81902F000, iSize=307200, "
                 f"pPrivate=0x0000000000000000, 0x00007FFEB7F620D0->(hBuffer=0x000055B586E60{i}D0))")
        log.line(f"DSQueueBuffer(hDS=0x000055B586E31000, hB=0x000055B586E60{i}D0)")
    log.line("GCRegisterEvent(hEventSrc=0x000055B586E31000, iEvent=EVENT_NEW_BUFFER, "
             "0x00007FFEB7F620D0->(hE=0x00007FD808002430))")
    log.line("DSStartAcquisition(hDS=0x000055B586E31000, Flags=ACQ_START_FLAGS_DEFAULT, "
             "iNumFramesToAcquire=4294967295)")


def frame(log: Log, number: int) -> None:
    buffer = f"000055B586E60{number % 5}D0"
    value = int(buffer, 16)
    handle = ",".join(f"0x{value >> 8 * i & 0xFF:02x}" for i in range(8))
    log.line(f"EventGetData(hEvent=0x00007FD808002430, 0x00007FD8190008F0->(Buffer={handle},"
             f"{dump(0, 8)}), 0x00007FD8190008E8->(iSize=16), iTimeout=1000)", 9 + number % 3)
    for command, kind, answer in (
        ("BUFFER_INFO_BASE", "INFO_DATATYPE_PTR", "0x00007FD81902F000"),
        ("(Unknown BUFFER_INFO_CMD: 27)", "INFO_DATATYPE_SIZET", "307200"),
        ("BUFFER_INFO_FRAMEID", "INFO_DATATYPE_UINT64", str(number)),
        ("BUFFER_INFO_TIMESTAMP", "INFO_DATATYPE_UINT64", str(number * 100_000 % 2**32)),
        ("BUFFER_INFO_IS_INCOMPLETE", "INFO_DATATYPE_BOOL8", "0"),
        ("BUFFER_INFO_WIDTH", "INFO_DATATYPE_SIZET", "640"),
        ("BUFFER_INFO_HEIGHT", "INFO_DATATYPE_SIZET", "480"),
        ("BUFFER_INFO_PIXELFORMAT", "INFO_DATATYPE_UINT64", "17301505"),
    ):
        log.line(f"DSGetBufferInfo(hDS=0x000055B586E31000, hBuffer=0x{buffer}, iCommand={command}, "
                 f"0x00007FD8190008D0->(iType={kind}) 0x00007FD8190008D8->(Buffer={answer}), "
                 "0x00007FD8190008E0->(iSize=8))")
    log.line("GCReadPort(hPort=0x000055B586E2EC38, iAddress=0xc0003000, "
             f"0x00007FFEB7F62100->(Buffer=,{dump(number, 384)}), 0x00007FFEB7F62118->(iSize=384)")
    log.line(f"DSQueueBuffer(hDS=0x000055B586E31000, hB=0x{buffer})")


def make(path: str, size: int) -> None:
    with open(path, "w", encoding="ascii") as file:
        log = Log(file)
        open_session(log)
        number = 0
        while log.size < size:
            frame(log, number)
            number += 1


def run(command: list[str]) -> tuple[float, float]:
    """The shortest time of some rounds, in seconds, and the most memory, in MB."""
    best, memory = float("inf"), 0.0
    for _ in range(ROUNDS):
        begin = time.monotonic()
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        if status != 0:
            sys.exit(f"{' '.join(command)} failed")
        best = min(best, time.monotonic() - begin)
        memory = max(memory, usage.ru_maxrss / 1024)
    return best, memory


def main() -> None:
    program, path, size = sys.argv[1], sys.argv[2], int(sys.argv[3])
    if not os.path.exists(path) or abs(os.path.getsize(path) - size) > size // 10:
        make(path, size)
    megabytes = os.path.getsize(path) / 1e6
    page = path + ".html"
    base, _ = run(["wc", "-l", path])
    print(f"{path}: {megabytes:.0f} MB; wc -l takes {base:.3f} s")
    print(f"{'command':<10}{'s':>8}{'MB/s':>8}{'of wc -l':>10}{'bar':>6}{'MB of memory':>14}")
    for name, arguments in (("report", []), ("check", []), ("show", []),
                            ("export", ["--to", "jsonl"]), ("html", [])):
        command = ["report", "--html", page] if name == "html" else [name, *arguments]
        seconds, memory = run([program, *command, path])
        ratio = seconds / base
        print(f"{name:<10}{seconds:>8.3f}{megabytes / seconds:>8.0f}{ratio:>10.1f}{BARS[name]:>6}"
              f"{memory:>14.1f}")
        if ratio > BARS[name]:
            print(f"MISSED: {name} takes {ratio:.1f} times as long as wc -l")
        if memory > MOST_MEMORY:
            print(f"MISSED: {name} takes {memory:.0f} MB")
    print(f"the page has {os.path.getsize(page) / 1e6:.2f} MB")
    if os.path.getsize(page) > MOST_OF_A_PAGE:
        print("MISSED: the page is too big")


if __name__ == "__main__":
    main()
