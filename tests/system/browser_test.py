"""A real browser: what it sends to the handler, and the example pages in it."""
import base64
import json
import os
import pathlib
import re
import subprocess
import unittest
import zlib

import harness

OPTIONS = "headless no-sandbox no-proxy-server hide-scrollbars user-data-dir=/tmp/profile"
PAGES = os.environ["KESTO_PAGES"].split(":")
FORM = """data:text/html;charset=utf-8,<form method=post action={} enctype={}><textarea name=b>
    </textarea><input type=file name=f><input type=submit>
    <input name="a %26amp; ü" value="//user[1%2B1]/fullname/text()">"""
# What a page shows once it is ready; of the settings, also the error next to each invalid field.
ANSWER = "document.contentType.endsWith('json') && JSON.parse(document.body.innerText).data"
TABLE = """!/Asking/.test(state.textContent) && [state, ...document.querySelectorAll("td")].map(
    cell => cell.textContent || getComputedStyle(cell, "::after").content)"""
LISTING = "window.received && [document.scripts.length, received.textContent]"
SETTINGS = """!window.seen && (window.seen = [document.title, document.scripts.length,
    window.done?.textContent, Object.fromEntries(Array.from(
        document.querySelectorAll("[aria-invalid]"), field => [field.id,
            window[field.getAttribute("aria-describedby").split(" ")[0]].textContent])),
    Object.fromEntries(new FormData(settings)), Array.from(interfaces.rows,
        row => Array.from(row.cells, cell => cell.textContent.trim()).join("|"))])"""
LOGIN = """!window.seen && (window.seen = [document.querySelector("h1 + p")?.textContent,
    document.querySelector("[name=action]").value])"""
RESULT = """!send.disabled && result.textContent.trim() && [result.textContent.trim(),
    send.nextSibling.value > 2 ** 25, send.nextSibling.position]"""
REPLACE = "\ue009a\ue000"  # Ctrl+A: what is typed next replaces the field's text


class Browser(unittest.TestCase):
    session = "http://127.0.0.1:9515/session"

    @classmethod
    def setUpClass(cls):
        harness.install_config()
        cls.url = cls.enterClassContext(harness.server("lighttpd", *PAGES))
        cls.enterClassContext(harness.running(["chromedriver", "--port=9515"]))
        harness.wait_for(lambda: harness.curl(cls.session)[1])
        options = {"goog:chromeOptions": {"args": ["--" + name for name in OPTIONS.split()]}}
        cls.session += "/" + cls.call("", capabilities={"alwaysMatch": options})["sessionId"]

    @classmethod
    def call(cls, path, **body):
        return json.loads(harness.curl("-d", json.dumps(body), cls.session + path)[0])["value"]

    def use(self, shown, *steps):
        """Opens pages, clicks elements, types into them ("element <- text"); returns what shows."""
        for css, typed, text in (step.partition(" <- ") for step in steps):
            if css.startswith("/"):
                self.call("/url", url=self.url + css)
                continue
            element, = self.call("/element", using="css selector", value=css).values()
            self.call(f"/element/{element}/" + ("value" if typed else "click"), text=text)
        script = f"return document.readyState == 'complete' && ({shown})"
        return harness.wait_for(lambda: self.call("/execute/sync", script=script, args=[]))

    def command(self, name, **parameters):
        return self.call("/goog/cdp/execute", cmd=name, params=parameters)

    def take_pictures(self, name, folder=os.environ.get("KESTO_ARTEFACTS", "/tmp")):
        for width in (1000, 360):
            self.command("Emulation.setDeviceMetricsOverride", width=width, height=800,
                         deviceScaleFactor=1, mobile=False)
            self.assertLessEqual(self.use("document.documentElement.scrollWidth"), width)
            png = self.command("Page.captureScreenshot", captureBeyondViewport=True)["data"]
            pathlib.Path(folder, f"{name}_{width}.png").write_bytes(base64.b64decode(png))

    def test_forms_for_the_handler(self):
        for kind in ("application/x-www-form-urlencoded", "multipart/form-data"):
            self.call("/url", url=FORM.format(self.url + "/query", kind))
            steps = "textarea <- //mtu\n[. = 1500]\n/text()", f"[type=file] <- {harness.QUERY}"
            self.assertEqual(self.use(ANSWER, *steps, "[type=submit]"),
                             {"a & ü": "Jana Müller", "b": "1500", "f": ""}, kind)
        self.assertEqual(subprocess.call(["cmp", harness.QUERY, "/tmp/query"]), 0)  # any byte value

    def test_query_page(self):
        new = (("<b>&", "//location/text()"), ("none", "//x:y[lang('en')]"), ("bad", "//mtu["))
        steps = [step for key, text in new
                 for step in ("#add", f":focus <- {key}", f"input:invalid <- {text}")]
        steps = "/query_page", *4 * ["[name=remove]"], *steps, "[type=submit]"
        self.assertEqual(self.use(TABLE, *steps), [
            "Answered: 4", "name server", "dns/server[@priority=1]",
            '<server priority="1">10.4.0.2</server>', *new[0],
            "Süd-Werk, Halle 4 <Kühlung & Pumpen>", *new[1], '"empty"', *new[2], '"not XPath 1.0"'])
        self.take_pictures("query_page")

    def test_form_page(self):
        self.use("true", "/form_page")
        self.take_pictures("form_page")
        scripts, seen = self.use(LISTING, "#text <- <script>'&amp;", "[type=image]")  # no file
        self.assertRegex(seen, r"(?s)arrived\s+\w+ = .*icon\.x.* text = 'gateway-7<script>'&amp;'")
        self.assertEqual(scripts, 1, seen)

    def test_settings_page(self):
        title, hostile = "Device settings", "\"'&lt;<b>ä現"
        form = dict(hostname="gateway-7", location="Süd-Werk, Halle 4 <Kühlung & Pumpen>", ntp="on",
                    method="static", address="10.4.0.17", mtu="1500", log="notice", note="\n")
        table = ["Interface|State|IP address|MTU",
                 "eth0 Uplink to the plant network|on|10.4.0.17|1500",
                 "eth1 Machines|on|192.168.100.1|1500", "wwan0 Spare|off||"]
        self.assertEqual(self.use(SETTINGS, "/settings_page"), [title, 0, None, {}, form, table])

        texts = [name for name in form if name not in ("method", "log", "ntp")]
        steps = *(f"#{name} <- {hostile}" for name in texts), "#dhcp", "#log [value=debug]", "#ntp"
        form.update({name: form[name] + hostile for name in texts}, method="dhcp", log="debug")
        form["note"] += "\n"  # a text area ends with a line end
        del form["ntp"]
        errors = dict(
            hostname="Use letters, digits and hyphens, with a letter or digit at both ends.",
            address="Enter four numbers from 0 to 255 with dots between them, such as 10.4.0.17.",
            mtu="Enter a number from 576 to 9000.")
        self.assertEqual(self.use(SETTINGS, *steps, "#hostname <- \n"),
                         ["Not saved: " + title, 0, None, errors, form, table])
        self.take_pictures("settings_page")

        good = dict(hostname="gw-7", location="<Süd>", address="10.4.0.30", mtu="1500", note="a\nb")
        steps = [f"#{name} <- {REPLACE}{text}" for name, text in good.items()]
        form.update(good, note=good["note"] + "\n")
        new = [title, 0, "Accepted. This page is an example: nothing was changed.", {}, form, table]
        self.assertEqual(self.use(SETTINGS, *steps, "[type=submit]"), new)

    def test_pages_for_any_client(self):
        for way, status in (("-XDELETE", 405), ("-I", 200), ("-d@/dev/null", 200)):
            self.assertEqual(harness.curl(way, self.url + "/settings_page")[1], status, way)
        names = "hostname location method address mtu log ntp note".split()
        hostile = "&".join(f"{name}=%22'%3C%26%3E%C3%A4" for name in names).encode()
        for page, query, form in (("settings_page", "", hostile), ("frames_page", "show=menu", b""),
                                  *((os.path.basename(page), "", b"") for page in PAGES)):
            command = {"command": [harness.CGI_FOLDER / page]}
            output = (harness.post(form, **command) if form else
                      harness.request("GET", query, **command))[1]
            header, _, html = output.partition(b"\n\n")
            self.assertIn(b"X-Frame-Options: SAMEORIGIN", header.split(b"\n"), page)
            # The document types know no attributes for screen readers, and not all of two pages.
            html = re.sub(rb' (aria-[a-z]+|role)="[^"]*"', b"", html)
            lint = subprocess.run(["xmllint", "--nonet", "--valid", "--noout", "-"], input=html,
                                  capture_output=True)
            self.assertEqual(lint.returncode == 0, page not in ("form_page", "query_page"), lint)

    def test_bodies_cut_off(self):
        form = b"hostname=a&location=b&method=static&mtu=1500&log=debug&address=10.4.0.1"
        part = b'--B\r\nContent-Disposition: form-data; name="image"; filename="cut"\r\n\r\n10.4'
        bodies = (form, "", len(form) + 1), (part, "multipart/form-data; boundary=B")
        for page in ("firmware_page", "form_page", "login_page", "settings_page"):
            for body, *announced in bodies:
                html = harness.post(body, *announced, command=[harness.CGI_FOLDER / page])[1]
                self.assertRegex(html, b'(?s)^Status: 400 .*"failed"(?!.*"done")', (page, body))
            self.assertEqual(os.path.exists("/tmp/cut"), page != "firmware_page", page)

    def test_frames_page(self):
        self.use("[frames.menu.document.links[4].click()]", "/frames_page")
        title = self.use("frames.content.document.title == 'Every control' && document.title")
        self.assertEqual(title, "Device")

    def log_in(self, cookie="token=a", token="a", origin="127.0.0.1:8080", password="device"):
        form = f"user=admin&password={password}&action=Log+in&token={token}"
        return harness.curl("-i", "-b", cookie, "-H", f"Origin: http://{origin}", "-d", form,
                            self.url + "/login_page")

    def test_login_page(self):
        for forged in ("", ""), ("token=", ""), ("token=a", "b"), ("token=a", "a", "127.0.0.1:81"):
            self.assertEqual(self.log_in(*forged)[1], 403, forged)
        self.assertRegex(self.log_in()[0], rb"(?is) 303 .*\nset-cookie: token=(?!a;)")  # a new one
        for password in ("device", "wrong"):  # sooner or later two come within one second
            harness.wait_for(lambda: b"tried just now" in self.log_in(password=password)[0])
        for *steps, message, button in (
                ("/login_page", None, "Log in"),
                ("#user <- admin", "[name=action]", "The name or the password is wrong.", "Log in"),
                ("#password <- device", "[name=action]", "Logged in as admin.", "Log out"),
                ("/login_page", None, "Log out"),
                ("[name=action]", "Logged out.", "Log in")):
            pathlib.Path("/tmp/login_page/last_attempt").unlink(missing_ok=True)
            self.assertEqual(self.use(LOGIN, *steps), [message, button], steps)

    def test_firmware_page(self):
        url, path = self.url + "/firmware_page", pathlib.Path("/tmp/profile/firmware.bin")
        image = os.urandom(32 << 20)
        image += zlib.crc32(image).to_bytes(4, "little")
        for content, told in (
                (image, "firmware.bin is intact. This page is an example: nothing was installed."),
                (image[:-1], "This is no image, or it was damaged on its way.")):
            path.write_bytes(content)
            seen = self.use(RESULT, "/firmware_page", f"#image <- {path}", "#send")
            self.assertEqual(seen, [told, True, 1])
            self.assertIn(told.encode(), harness.curl("-F", f"image=@{path}", url)[0], "no script")
        os.truncate(path, 48 << 20)
        self.assertEqual(harness.curl("-F", f"image=@{path}", url)[1], 413)
        named = path.rename("/tmp/named")
        self.assertEqual(harness.curl("-F", f"image={named}", url)[1], 200)
        self.assertTrue(named.exists())  # only an upload is moved and removed
        self.assertEqual(list(pathlib.Path("/tmp").glob("firmware*")), [])
