"""What ./run tells."""
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import unittest
import urllib.request

BUILD = pathlib.Path(os.environ["VX_BUILD"])
RUN = pathlib.Path(__file__).resolve().parents[2] / "tools/run.py"


class Run(unittest.TestCase):
    def test_the_address_of_the_page_comes_first(self):
        with tempfile.TemporaryDirectory(prefix="vx_run_") as state:
            process = subprocess.Popen(
                [sys.executable, "-B", str(RUN), "--build", str(BUILD), "--state", state],
                stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, text=True)
            try:
                first = process.stdout.readline()
                address = re.search(r"page of the lab cloud: (http://\S+)", first)
                self.assertTrue(address, first)
                with urllib.request.urlopen(address[1], timeout=20) as page:
                    self.assertIn("text/html", page.headers["Content-Type"])
                    policy = page.headers["Content-Security-Policy"]
                self.assertIn("default-src 'none'", policy)
                self.assertNotIn("unsafe", policy)
            finally:
                process.send_signal(signal.SIGTERM)
                process.stdout.read()
                process.stdout.close()
                process.wait(30)
