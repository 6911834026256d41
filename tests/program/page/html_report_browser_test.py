# SPDX-License-Identifier: MIT
"""Looks at pages of `vextrel report --html` in Chromium.

    html_report_browser_test.py PROGRAM

The logs are written here, so that what a page has to show is known.
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

PROGRAM = ""
MARKUP = "<script>document.title='owned'</script><img src=x onerror=alert(1)>"


class Log:
    """Lines in the layout of config/file.properties, from 12:00:00.000 on."""

    def __init__(self):
        self.lines = []

    def add(self, ms: int, message: str, thread: int = 7, priority: str = "INFO ") -> int:
        """Returns the line's number."""
        seconds, rest = divmod(ms, 1000)
        self.lines.append(f"2026-11-21 12:{seconds // 60:02}:{seconds % 60:02}.{rest:03} [{thread}] {priority} {message}\n")
        return len(self.lines)

    def session(self, device: str) -> None:
        ok = "GC_ERR_SUCCESS="
        self.add(0, "Loading GenTL Producer '/opt/camera.cti'")
        self.add(1, ok + "GCInitLib(void)")
        self.add(1, ok + "TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))")
        self.add(2, ok + "TLOpenInterface(hTL=0x0000000000000A10, 0x000000000000F028->(sInterfaceName=If0), "
                    "0x000000000000F030->(hInterface=0000000000000A20))")
        self.add(4, ok + f"IFOpenDevice(hInterface=0x0000000000000A20, 0x000000000000F038->(sDevName={device}), "
                    "iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, 0x000000000000F040->(hDev=0xc0de0))")
        self.add(5, ok + "DevOpenDataStream(hDev=0x00000001000C0DE0, 0x000000000000F058->(pID=Stream0), "
                    "0x000000000000F060->(hDS=0x0000000000000D50))")
        for buffer in (1, 2):
            self.add(5, ok + f"DSAnnounceBuffer(hDS=0x0000000000000D50, pBuffer=0x000000000000F{buffer}00, iSize=64, "
                        f"pPrivate=0x0000000000000000, 0x000000000000F068->(hBuffer=0x0000000000000B0{buffer}))")
        self.add(6, ok + "GCRegisterEvent(hEventSrc=0x0000000000000D50, iEvent=EVENT_NEW_BUFFER, "
                    "0x000000000000F070->(hE=0x0000000000000E10))")
        for buffer in (1, 2):
            self.queue(7, buffer)
        self.add(10, ok + "DSStartAcquisition(hDS=0x0000000000000D50, Flags=ACQ_START_FLAGS_DEFAULT, "
                     "iNumFramesToAcquire=4294967295)")

    def queue(self, ms: int, buffer: int) -> None:
        self.add(ms, f"GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000000D50, hB=0x0000000000000B0{buffer})")

    def frame(self, ms: int, buffer: int) -> None:
        zeros = ",0x00" * 14
        self.add(ms, f"GC_ERR_SUCCESS=EventGetData(hEvent=0x0000000000000E10, 0x000000000000F000->(Buffer=0x0{buffer},0x0b{zeros}), "
                     "0x000000000000F008->(iSize=16), iTimeout=500)")


def small_log() -> tuple[Log, int]:
    """40 frames, 100 ms apart but for one that's 600 ms late. A buffer is revoked twice: returns that line, too."""
    log = Log()
    log.session("Cam1")
    now = 10
    for i in range(40):
        now += 700 if i == 20 else 100
        log.frame(now, i % 2 + 1)
        log.queue(now + 4, i % 2 + 1)
    log.add(now + 50, "GC_ERR_SUCCESS=DSStopAcquisition(hDS=0x0000000000000D50, Flags=ACQ_STOP_FLAGS_DEFAULT)")
    log.add(now + 50, "GC_ERR_SUCCESS=DSFlushQueue(hDS=0x0000000000000D50, QueueType=ACQ_QUEUE_ALL_DISCARD)")
    revoke = ("DSRevokeBuffer(hDS=0x0000000000000D50, hBuffer=0x0000000000000B01, pBuffer=0x000000000000F078 "
              "(0x000000000000F100), pPrivate=0x000000000000F080(NULL))")
    log.add(now + 51, "GC_ERR_SUCCESS=" + revoke)
    twice = log.add(now + 52, "GC_ERR_INVALID_HANDLE=" + revoke)
    return log, twice


def hostile_log() -> Log:
    log = Log()
    log.session(MARKUP)
    log.add(20, f"GC_ERR_ACCESS_DENIED=IFOpenDevice(hInterface=0x0000000000000A20, 0x000000000000F038->(sDevName={MARKUP}), "
                "iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, 0x000000000000F040->(hDev=0x0))", thread=f"<b>{MARKUP}</b>")
    log.add(21, f"GC_ERR_SUCCESS=GCGetLastError(0x000000000000F048->(ErrorCode={MARKUP}), 0x000000000000F050->(pErrorText=\x18), "
                "0x0000000000000018->(iSize=0))", thread=f"<b>{MARKUP}</b>")
    log.add(22, f"</script><script>document.title='owned'</script> \u2028 {MARKUP}", priority="ERROR")
    return log


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        options = Options()
        for each in ("--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars", "--window-size=1200,2400",
                     f"--user-data-dir={cls.scratch.name}/profile"):
            options.add_argument(each)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        cls.browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()
        cls.scratch.cleanup()

    def open(self, log: Log, name: str = "app.log") -> None:
        folder = pathlib.Path(self.scratch.name)
        (folder / name).write_text("".join(log.lines), encoding="utf-8", newline="\n")
        page = folder / "page.html"
        subprocess.run([PROGRAM, "report", "--html", page, folder / name], check=True, capture_output=True)
        for kind in ("browser", "performance"):
            self.browser.get_log(kind)
        self.browser.get(page.as_uri())
        self.assertEqual(self.run_script("return document.body.dataset.ready"), "yes")

    def tearDown(self):
        self.assertEqual(self.browser.get_log("browser"), [], "something is on the console")
        requests = []
        for entry in self.browser.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            # The browser's own first page makes requests, too.
            if message["method"] == "Network.requestWillBeSent" and message["params"]["documentURL"].startswith("file:"):
                requests.append(message["params"]["request"]["url"][:100])
        outside = [each for each in requests if not each.startswith(("data:", "file:///")) or
                   (each.startswith("file:///") and not each.endswith("/page.html"))]
        self.assertEqual(outside, [], "the page asks for something")
        self.assertEqual(requests[:1] and requests[0].endswith("/page.html"), True)

    def run_script(self, script: str, *arguments):
        return self.browser.execute_script(script, *arguments)

    def view(self) -> tuple[float, float]:
        return tuple(self.run_script("return [+document.body.dataset.from, +document.body.dataset.to]"))

    def colors_of(self, canvas: str) -> int:
        """How many different colors the canvas has, of those that are drawn."""
        return self.run_script(
            "const all = [...document.querySelectorAll(arguments[0])].map((canvas) => {"
            "  const copy = Object.assign(document.createElement('canvas'), {width: canvas.width, height: canvas.height});"
            "  const context = copy.getContext('2d', {willReadFrequently: true});"
            "  context.drawImage(canvas, 0, 0);"
            "  const bytes = context.getImageData(0, 0, canvas.width, canvas.height).data;"
            "  const seen = new Set();"
            "  for (let i = 0; i < bytes.length; i += 4) { if (bytes[i + 3] > 40) { seen.add(bytes.slice(i, i + 3).join()); } }"
            "  return seen.size; });"
            "return Math.max(...all);", canvas)

    def test_shows_plots_that_are_not_empty(self):
        log, _ = small_log()
        self.open(log)
        for canvas in ("#intervals canvas", "#depths canvas", "#timeline"):
            self.assertGreater(self.colors_of(canvas), 2, canvas)
        self.assertEqual(self.run_script("return document.querySelectorAll('#histogram i[title]').length > 1"), True)
        self.assertIn("700", self.browser.find_element(By.ID, "stream-figures").text)
        self.assertIn("40", self.browser.find_element(By.ID, "summary").text)
        # TL, IF, DEV, DS, two buffers, an event.
        self.assertEqual(len(self.browser.find_elements(By.CSS_SELECTOR, "#handles tbody tr")), 7)
        # Calls on every line but the first.
        self.assertEqual(self.run_script("return +document.body.dataset.drawn"), len(log.lines) - 1)

    def test_zooms_by_keys_wheel_dragging_and_buttons(self):
        self.open(small_log()[0])
        whole = self.view()
        span = whole[1] - whole[0]
        timeline = self.browser.find_element(By.ID, "timeline")
        self.run_script("arguments[0].focus()", timeline)
        timeline.send_keys("+")
        self.assertAlmostEqual(self.view()[1] - self.view()[0], span / 2, delta=1)
        begin = self.view()[0]
        timeline.send_keys(Keys.ARROW_RIGHT)
        self.assertAlmostEqual(self.view()[0], begin + span / 10, delta=1)
        for _ in range(12):
            timeline.send_keys("+")
        # Four milliseconds, the finest that the times of this log allow.
        self.assertAlmostEqual(self.view()[1] - self.view()[0], 4, delta=0.01)
        timeline.send_keys("0")
        self.assertEqual(self.view(), whole)
        self.run_script("arguments[0].dispatchEvent(new WheelEvent('wheel', {deltaY: -100, clientX: 600, bubbles: true, cancelable: true}))", timeline)
        self.assertLess(self.view()[1] - self.view()[0], span * 0.8)
        self.browser.find_element(By.ID, "zoom-all").click()
        for element in (timeline, self.browser.find_element(By.CSS_SELECTOR, "#intervals canvas:nth-of-type(2)")):
            self.run_script("arguments[0].scrollIntoView({block: 'center'})", element)
            ActionChains(self.browser, duration=20).move_to_element_with_offset(element, -100, 0).click_and_hold() \
                .move_by_offset(100, 0).move_by_offset(100, 0).release().perform()
            self.assertLess(self.view()[1] - self.view()[0], span / 3)
            self.browser.find_element(By.ID, "zoom-all").click()
            self.assertEqual(self.view(), whole)

    def test_range_selector_moves_the_timeline_too(self):
        self.open(small_log()[0])
        whole = self.view()
        handle = self.browser.find_elements(By.CSS_SELECTOR, "#intervals .dygraph-rangesel-zoomhandle")[0]
        ActionChains(self.browser, duration=20).click_and_hold(handle).move_by_offset(150, 0) \
            .move_by_offset(150, 0).release().perform()
        self.assertGreater(self.view()[0], whole[0] + 500)
        self.assertAlmostEqual(self.view()[1], whole[1], delta=1)

    def test_click_on_a_finding_shows_its_lines(self):
        log, twice = small_log()
        self.open(log)
        finding = next(each for each in self.browser.find_elements(By.CSS_SELECTOR, "details.finding")
                       if "HND-AFTER" in each.text)
        self.assertEqual(finding.find_elements(By.CSS_SELECTOR, "table.rows"), [])
        finding.find_element(By.TAG_NAME, "summary").click()
        deadline = time.monotonic() + 5
        while not finding.find_elements(By.CSS_SELECTOR, "tr.own") and time.monotonic() < deadline:
            time.sleep(0.02)
        own = finding.find_element(By.CSS_SELECTOR, "tr.own").text
        self.assertIn(str(twice), own)
        self.assertIn("GC_ERR_INVALID_HANDLE", own)
        related = [each.text for each in finding.find_elements(By.CSS_SELECTOR, "tr.related")]
        self.assertTrue(any(each.startswith(str(twice - 1)) and "BUF1 is closed" in each for each in related), related)
        finding.find_element(By.TAG_NAME, "button").click()
        begin, end = self.view()
        # 12:00:04.662, since 10 ms, 40 frames, 600 ms more, and 52 ms.
        self.assertTrue(begin < 4662 < end, (begin, end))

    def test_a_log_full_of_markup_is_text(self):
        self.open(hostile_log(), "a&amp;b.log")
        self.assertNotIn("owned", self.browser.title)
        self.assertIn("a&amp;b.log", self.browser.find_element(By.ID, "title").text)
        self.assertEqual(self.run_script("return document.querySelectorAll('script').length"), 4)
        self.assertEqual(self.run_script("return document.querySelectorAll('img, b > b, main script').length"), 0)
        self.assertIn(MARKUP, self.browser.find_element(By.ID, "handles").text)
        self.assertIn(MARKUP, self.browser.find_element(By.ID, "errors").text)
        for finding in self.browser.find_elements(By.CSS_SELECTOR, "details.finding > summary"):
            finding.click()
        self.assertEqual(self.run_script("return document.querySelectorAll('img, main script').length"), 0)

    def test_is_light_and_dark_and_prints_what_is_closed(self):
        self.open(small_log()[0])
        backs = []
        for scheme in ("light", "dark"):
            self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
            backs.append(self.run_script("return getComputedStyle(document.body).backgroundColor"))
            self.assertGreater(self.colors_of("#timeline"), 2)
        self.assertEqual(backs, ["rgb(255, 255, 255)", "rgb(20, 24, 29)"])
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})
        self.run_script("dispatchEvent(new Event('beforeprint'))")
        self.assertGreater(len(self.browser.find_elements(By.CSS_SELECTOR, "details[open] tr.own")), 0)
        self.run_script("dispatchEvent(new Event('afterprint'))")
        self.assertEqual(self.browser.find_elements(By.CSS_SELECTOR, "details[open]"), [])

    def test_a_log_without_times_says_so(self):
        log = Log()
        log.session("Cam1")
        log.lines = ["INFO " + line.split("INFO  ", 1)[1] for line in log.lines]
        self.open(log)
        self.assertIn("no time", self.browser.find_element(By.ID, "time").text)
        self.assertEqual(len(self.browser.find_elements(By.CSS_SELECTOR, "#handles tbody tr")), 7)

    def test_a_log_of_many_calls_has_bars(self):
        log = Log()
        log.session("Cam1")
        for i in range(17_000):
            log.frame(20 + 10 * i, i % 2 + 1)
            log.queue(24 + 10 * i, i % 2 + 1)
        self.open(log)
        self.assertIn("of the 34,011 calls", self.browser.find_element(By.ID, "timeline-readout").text)
        self.assertGreater(self.colors_of("#timeline"), 2)
        self.assertLess(self.run_script("return performance.timing.loadEventEnd - performance.timing.navigationStart"), 2000)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
