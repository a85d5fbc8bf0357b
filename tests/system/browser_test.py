"""A real browser: what it sends to the handler, and the example pages in it."""
import base64
import json
import os
import pathlib
import re
import subprocess
import unittest
import urllib.parse
import urllib.request
import zlib

import harness

OPTIONS = ("headless no-sandbox disable-gpu disable-quic no-first-run disable-background-networking no-proxy-server "
           "disable-component-update disable-sync disable-dev-shm-usage hide-scrollbars user-data-dir=/tmp/profile")
OPEN = urllib.request.build_opener(urllib.request.ProxyHandler({})).open
FORM = """data:text/html;charset=utf-8,<form method=post action={} enctype={}><textarea name=b></textarea>
    <input type=file name=f><input name="a %26amp; ü" value="//user[1%2B1]/fullname/text()"><input type=submit>"""
# What a page shows once it is ready: the handler's answer, the table of answers, the data received.
ANSWER = "document.querySelector('pre') && JSON.parse(document.querySelector('pre').textContent).data"
TABLE = """!/Asking/.test(state.textContent) &&
    [state, ...document.querySelectorAll("td")].map(e => e.textContent || getComputedStyle(e, "::after").content)"""
LISTING = r"""window.received && !window.seen && (window.seen = [document.querySelectorAll(".failed, script").length,
    Object.fromEntries(received.textContent.matchAll(/\S+(?= = '(.*?)'\n)/gs))])"""

# The error next to each invalid field, and the form's data.
SETTINGS = """!window.seen && (window.seen = [document.title, document.scripts.length, window.done?.textContent,
    Object.fromEntries([...document.querySelectorAll("[aria-invalid]")].map(field => [field.id,
        document.getElementById(field.getAttribute("aria-describedby").split(" ")[0]).textContent])),
    Object.fromEntries(new FormData(settings)), [...document.querySelectorAll("#interfaces tr")].map(
        row => [...row.children].map(cell => cell.textContent.trim()).join("|"))])"""
LOGIN = """!window.seen && (window.seen = [document.querySelector("h1 + p")?.textContent,
    document.querySelector("[name=action]").value])"""
RESULT = """!send.disabled && result.textContent.trim() && [result.textContent.trim(),
    document.querySelector("progress").value > 2 ** 25, document.querySelector("progress").position]"""
REPLACE = "\ue009a\ue000"  # Ctrl+A: what is typed next replaces the field's text


class Browser(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.url = cls.enterClassContext(harness.server("lighttpd", *os.environ["KESTO_PAGES"].split(":")))
        driver = cls.enterClassContext(subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE))
        cls.addClassCleanup(driver.terminate)
        port = next(filter(None, (re.search(rb"on port (\d+)\.", line) for line in driver.stdout)))[1]
        cls.session = f"http://127.0.0.1:{int(port)}/session"
        options = {"goog:chromeOptions": {"args": ["--" + option for option in OPTIONS.split()]}}
        cls.session += "/" + cls.call("", capabilities={"alwaysMatch": options})["sessionId"]

    @classmethod
    def call(cls, path, **body):
        return json.load(OPEN(cls.session + path, json.dumps(body).encode()))["value"]

    def setUp(self):
        harness.install_config()

    def use(self, shown, *steps):
        """Clicks elements or types text into them ("element <- text"), then returns what is shown."""
        for css, typed, text in (step.partition(" <- ") for step in steps):
            element, = self.call("/element", using="css selector", value=css).values()
            self.call(f"/element/{element}/" + ("value" if typed else "click"), text=text)
        script = f"return document.readyState == 'complete' && ({shown})"
        return harness.wait_for(lambda: self.call("/execute/sync", script=script, args=[]))

    def take_pictures(self, name, folder=os.environ.get("KESTO_ARTEFACTS", "/tmp")):
        for width in (1000, 360):
            size = {"width": width, "height": 800, "deviceScaleFactor": 1, "mobile": False}
            self.call("/goog/cdp/execute", cmd="Emulation.setDeviceMetricsOverride", params=size)
            self.assertLessEqual(self.use("document.documentElement.scrollWidth"), width)
            png = self.call("/goog/cdp/execute", cmd="Page.captureScreenshot", params={"captureBeyondViewport": True})
            pathlib.Path(folder, f"{name}_{width}.png").write_bytes(base64.b64decode(png["data"]))

    def test_forms_for_the_handler(self):
        for kind in ("application/x-www-form-urlencoded", "multipart/form-data"):
            self.call("/url", url=FORM.format(self.url + "/query", kind))
            steps = "textarea <- //mtu\n[. = 1500]\n/text()", "[type=file] <- /usr/lib/cgi-bin/query", "[type=submit]"
            self.assertEqual(self.use(ANSWER, *steps), {"a & ü": "Jana Müller", "b": "1500", "f": ""})
        self.assertEqual(subprocess.call(["cmp", "/usr/lib/cgi-bin/query", "/tmp/query"]), 0)  # has every byte value

    def test_query_page(self):
        self.call("/url", url=self.url + "/query_page")
        rows = (("<b>&", "//location/text()"), ("none", "//x:y[lang('en')]"), ("bad", "//mtu["))
        steps = [step for key, text in rows for step in ("#add", f":focus <- {key}", f"input:invalid <- {text}")]
        self.assertEqual(self.use(TABLE, *4 * ["[name=remove]"], *steps, "[type=submit]"), [
            "Answered: 4", "name server", "dns/server[@priority=1]", '<server priority="1">10.4.0.2</server>',
            *rows[0], "Süd-Werk, Halle 4 <Kühlung & Pumpen>", *rows[1], '"empty"', *rows[2], '"not XPath 1.0"'])
        self.take_pictures("query_page")

    def test_form_page(self):
        self.call("/url", url=self.url + "/form_page")
        self.take_pictures("form_page")
        scripts, seen = self.use(LISTING, "#text <- <script>'&amp;", "[type=image]")  # with the file field left empty
        self.assertEqual((scripts, seen["text"], "icon.x" in seen), (1, "gateway-7<script>'&amp;", True))

    def test_settings_page(self):
        self.call("/url", url=self.url + "/settings_page")
        title, done, hostile = "Device settings", "Accepted. This page is an example: nothing was changed.", "\"'&lt;<b>ä現"
        stored = dict(hostname="gateway-7", location="Süd-Werk, Halle 4 <Kühlung & Pumpen>", method="static",
                      address="10.4.0.17", mtu="1500", log="notice", ntp="on", note="\n")
        table = ["Interface|State|IP address|MTU", "eth0 Uplink to the plant network|on|10.4.0.17|1500",
                 "eth1 Machines|on|192.168.100.1|1500", "wwan0 Spare|off||"]
        self.assertEqual(self.use(SETTINGS), [title, 0, None, {}, stored, table])

        sent = {name: text + hostile for name, text in stored.items() if name not in ("method", "log", "ntp")}
        steps = [f"#{name} <- {hostile}" for name in sent] + ["#dhcp", "#log [value=debug]", "#ntp"]
        errors = dict(hostname="Use letters, digits and hyphens, with a letter or digit at both ends.",
                      address="Enter four numbers from 0 to 255 with dots between them, such as 10.4.0.17.",
                      mtu="Enter a number from 576 to 9000.")
        sent.update(method="dhcp", log="debug", note=sent["note"] + "\n")  # a text area ends with a line end
        self.assertEqual(self.use(SETTINGS, *steps, "#hostname <- \n"), ["Not saved: " + title, 0, None, errors, sent, table])
        self.take_pictures("settings_page")
        sent.update(hostname="gateway-7", location="Halle 4 <Süd>", address="10.4.0.30", mtu="1500", note="Moved to\nhall 4")
        steps = [f"#{name} <- {REPLACE}{text}" for name, text in sent.items() if name not in ("method", "log")]
        sent["note"] += "\n"
        self.assertEqual(self.use(SETTINGS, *steps, "[type=submit]"), [title, 0, done, {}, sent, table])

    def test_pages_for_any_client(self):
        url = self.url + "/settings_page"
        self.assertEqual([harness.curl(way, url)[1] for way in ("-XDELETE", "-I", "-d@/dev/null")], [405, 200, 200])
        hostile = dict.fromkeys("hostname location method address mtu log ntp note".split(), "\"'<&>ä")
        pages = "settings_page login_page firmware_page frames_page frames_page?show=menu".split()
        for path, form in (*((path, None) for path in pages), (pages[0], urllib.parse.urlencode(hostile).encode())):
            # The document types do not know the attributes for screen readers.
            page = re.sub(rb' (aria-[a-z]+|role)="[^"]*"', b"", OPEN(f"{self.url}/{path}", form).read())
            for xml, errors in ((page, 0), (page.replace(b"<head>", b"<head x=''>"), 1)):
                lint = subprocess.run(["xmllint", "--nonet", "--valid", "--noout", "-"], input=xml, capture_output=True)
                self.assertEqual((lint.returncode > 0, lint.stderr.count(b"attribute x")), 2 * (errors,), lint.stderr)

    def test_frames_page(self):
        self.call("/url", url=self.url + "/frames_page")
        self.assertIsNone(self.use("frames.menu.document.links.length && [frames.menu.document.links[4].click()]")[0])
        self.assertEqual(self.use("frames.content.document.title == 'Every control' && document.title"), "Device")

    def test_login_page(self):
        url = self.url + "/login_page"
        fields = "-duser=admin&password=device&action=Log+in&token="
        for cookie, token, status in (("", "", 403), ("token=", "", 403), ("token=a", "b", 403), ("token=a", "a", 303)):
            self.assertEqual(harness.curl("-b", cookie, fields + token, url)[1], status)
        for steps, seen in (([], [None, "Log in"]),
                            (["#user <- admin", "[name=action]"], ["The name or the password is wrong.", "Log in"]),
                            (["#password <- device", "[name=action]"], ["Logged in as admin.", "Log out"]),
                            ([], [None, "Log out"]),
                            (["[name=action]"], ["Logged out.", "Log in"])):
            if not steps:
                self.call("/url", url=url)  # (re)load
            self.assertEqual(self.use(LOGIN, *steps), seen)

    def test_firmware_page(self):
        url, path, image = self.url + "/firmware_page", pathlib.Path("/tmp/profile/firmware.bin"), os.urandom(32 << 20)
        image += zlib.crc32(image).to_bytes(4, "little")
        for content, told in ((image, "firmware.bin is intact. This page is an example: nothing was installed."),
                              (image[:-1], "This is no image, or it was damaged on its way.")):
            path.write_bytes(content)
            self.call("/url", url=url)
            self.assertEqual(self.use(RESULT, f"#image <- {path}", "#send"), [told, True, 1])
            self.assertIn(told.encode(), harness.curl("-F", f"image=@{path}", url)[0])  # without the script
        os.truncate(path, 48 << 20)
        for part, status in (f"image={path}", 200), (f"image=@{path}", 413):  # a client's path is not an upload
            self.assertEqual(harness.curl("-F", part, url)[1], status)
        self.assertEqual(list(pathlib.Path("/tmp").glob("firmware*")), [])
