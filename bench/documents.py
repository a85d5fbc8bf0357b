"""The documents, queries and request bodies of the benchmark: the same bytes in every run.

All XML libraries print these ordinary documents alike: there is no white space around texts and
no empty element in what the queries select."""

import random
from urllib.parse import quote

SECTIONS = {
    "interfaces": """\
    <interface name="eth{i}" type="ethernet" enabled="true">
      <description>Line {i} of the plant network</description>
      <mac>02:42:ac:11:{a:02x}:{b:02x}</mac>
      <address family="inet" method="static">
        <ip>10.{a}.{b}.17</ip>
        <mask>255.255.255.0</mask>
      </address>
      <vlan id="{i}"/>
      <mtu>1500</mtu>
    </interface>
""",
    "users": """\
    <user name="user{i}" role="operator" locked="false">
      <fullname>Operator {i} of line {a}</fullname>
      <shell>/bin/sh</shell>
      <mail notify="true">user{i}@plant.example</mail>
    </user>
""",
    "services": """\
    <service name="service-{i}" port="{port}" enabled="true">
      <root>/home/httpd/service-{i}</root>
      <log level="notice" server="10.4.0.9"/>
    </service>
""",
    "rules": """\
    <rule action="accept" protocol="tcp">
      <source>10.{a}.{b}.0/24</source>
      <port>{port}</port>
    </rule>
""",
}
HEAD = '<?xml version="1.0" encoding="UTF-8"?>\n<configuration version="3" device="KG-2040">\n'

# What the keys of a query select, in rotation: an attribute, a text, an element with its subtree.
PATTERNS = (
    "/configuration/services/service[@name='service-{i}']/@port",
    "/configuration/interfaces/interface[@name='eth{i}']/address/ip/text()",
    "/configuration/users/user[@name='user{i}']",
)
BOUNDARY = b"----FormBoundary7MA4YWxkTrZu0gW"  # like a browser's


def entries_in(kilobytes):
    """The number of entries per section in a document of about that size."""
    return round(kilobytes * 1024 / sum(len(text) + 4 for text in SECTIONS.values()))


def document(kilobytes):
    """A device configuration of about that size."""
    text = HEAD
    for name, entry in SECTIONS.items():
        text += f"  <{name}>\n"
        for i in range(entries_in(kilobytes)):
            text += entry.format(i=i, a=i // 250 + 1, b=i % 250 + 1, port=8000 + i)
        text += f"  </{name}>\n"
    return f"{text}</configuration>\n".encode()


def query_string(kilobytes, keys):
    """A query string with that many sorted keys, for the document of that size."""
    count = entries_in(kilobytes)
    fields = ((f"k{k}", PATTERNS[k % 3].format(i=(count // 2 + k // 3 * 7) % count)) for k in range(keys))
    return "&".join(f"{key}={quote(text)}" for key, text in sorted(fields))


def part(content, header=b'name="a"'):
    """One part of a multipart body."""
    return b"--%b\r\nContent-Disposition: form-data; %b\r\n\r\n%b\r\n" % (BOUNDARY, header, content)


def multipart(*parts):
    """A multipart body."""
    return b"".join(parts) + b"--" + BOUNDARY + b"--\r\n"


def upload(content, fields=0):
    """A multipart body with a file, preceded by that many one-byte fields."""
    header = b'name="image"; filename="upload.bin"\r\nContent-Type: application/octet-stream'
    return multipart(part(b"1") * fields, part(content, header))


def noise(mebibytes):
    """Bytes like those of a compressed firmware image."""
    return random.Random(1).randbytes(mebibytes << 20)
