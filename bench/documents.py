"""The documents, queries and request bodies of the benchmark: the same bytes at every run.

The documents are ordinary ones, which every XML library prints alike: no white space around
texts, and no empty element in what the queries select."""

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

BOUNDARY = b"----FormBoundary7MA4YWxkTrZu0gW"  # feed.c has it too

# What a query asks for, by turns: an attribute, a text, an element with its subtree.
PATTERNS = (
    "/configuration/services/service[@name='service-{i}']/@port",
    "/configuration/interfaces/interface[@name='eth{i}']/address/ip/text()",
    "/configuration/users/user[@name='user{i}']",
)


def section(name, count):
    """One section of the document with that many entries."""
    entries = (SECTIONS[name].format(i=i, a=i // 250 + 1, b=i % 250 + 1, port=8000 + i)
               for i in range(count))
    return f"  <{name}>\n{''.join(entries)}  </{name}>\n"


def entries_in(kilobytes):
    """How many entries a section of a document of about that size has."""
    return round(kilobytes * 1024 / sum(len(text) + 4 for text in SECTIONS.values()))


def document(kilobytes):
    """A device configuration of about that size."""
    body = "".join(section(name, entries_in(kilobytes)) for name in SECTIONS)
    return f"{HEAD}{body}</configuration>\n".encode()


def query_string(kilobytes, keys):
    """A query string with that many keys for the document of that size."""
    count = entries_in(kilobytes)
    expressions = (PATTERNS[k % 3].format(i=(count // 2 + k // 3 * 7) % count)
                   for k in range(keys))
    return "&".join(f"k{k}={quote(text)}" for k, text in enumerate(expressions))


def part(name, content):
    """One text field of a multipart body."""
    return (b"--" + BOUNDARY + b'\r\nContent-Disposition: form-data; name="' + name
            + b'"\r\n\r\n' + content + b"\r\n")


def tiny_parts(count):
    """A multipart body of that many one-byte fields, all of one name: a single query."""
    return part(b"a", b"1") * count + b"--" + BOUNDARY + b"--\r\n"


def text_field(content):
    """A multipart body of one text field."""
    return part(b"a", content) + b"--" + BOUNDARY + b"--\r\n"


def percent_escapes(count):
    """A URL-encoded body of one field, all escapes."""
    return b"a=" + b"%41" * count
