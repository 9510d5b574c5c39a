"""Reads a saved draft and compares it with the mail that was handed off."""

import email
import email.header
import email.policy
import email.utils
import re


def parse(raw):
    return email.message_from_bytes(raw, policy=email.policy.default)


def _lines(text):
    """Line breaks as LF and the trailing blank lines clients add dropped."""
    return text.replace("\r\n", "\n").replace("\r", "\n").rstrip("\n")


def body_of(message):
    part = message.get_body(preferencelist=("plain",))
    if part is None:
        return None
    return _lines(part.get_content())


def attachments_of(message):
    """Every part but the body: (file name, bytes), in the draft's order."""
    body = message.get_body(preferencelist=("plain", "html"))
    found = []
    for part in message.walk():
        if part.is_multipart() or part is body:
            continue
        if part.get_content_type() == "text/html" and part.get_filename() is None:
            continue  # the HTML alternative of the body
        data = part.get_payload(decode=True)
        if part.get_content_maintype() == "text":
            # A text part travels in MIME's canonical form, CR LF line ends (Claws Mail
            # converts, the others keep the file as it is); a reader gets its own line ends.
            data = data.replace(b"\r\n", b"\n")
        found.append((_file_name(part), data))
    return found


def _file_name(part):
    # Claws Mail writes a name holding double quotes between quotes without escaping them
    # (filename="it's "quoted".bin"), which a parser ends at the second quote. The name the
    # client was given is still all there: between the first and the last quote.
    disposition = raw_header(part, "Content-Disposition")
    unescaped = re.search(r'\bfilename="(.*)"\s*$', disposition, re.S)
    if unescaped and '"' in unescaped.group(1) and "\\" not in unescaped.group(1):
        return unescaped.group(1)
    return part.get_filename()


def header_text(message, name):
    """The header decoded (encoded words) and unfolded."""
    return ", ".join(str(value) for value in message.get_all(name) or [])


def raw_header(message, name):
    """The header as written, unfolded but not decoded: an encoded display name such as
    =?UTF-8?B?...?= may hold a comma once decoded, so addresses are split before that."""
    values = [value for key, value in message.raw_items() if key.lower() == name.lower()]
    return ", ".join(re.sub(r"\r?\n(?=[ \t])", "", str(v)) for v in values)


def _decoded(words):
    return str(email.header.make_header(email.header.decode_header(words)))


# An address a mail could be delivered to: local part @ domain, nothing around them.
DELIVERABLE = re.compile(r"^[A-Za-z0-9.!#$%&'*+/=?^_`{|}~-]+@[A-Za-z0-9-]+(\.[A-Za-z0-9-]+)+$")


def recipient_problems(message, name, expected):
    """Each expected recipient must be one address with its display name intact, and
    nothing else may be there. A text that is no address (address None) must not vanish
    silently nor turn into a deliverable address: clients split it at its commas, but
    every piece must stay visibly invalid."""
    header = raw_header(message, name)
    got = [(_decoded(n), a) for n, a in email.utils.getaddresses([header]) if n or a]
    want = [(p.name, p.address) for p in expected if p.address is not None]
    if any(p.address is None for p in expected):
        invalid = [entry for entry in got if not DELIVERABLE.match(entry[1])]
        got = [entry for entry in got if DELIVERABLE.match(entry[1])]
        if not invalid:
            return [f"{name}: the invalid address vanished (header {header!r})"]
    if sorted(got) != sorted(want):
        return [f"{name}: expected {want}, draft has {got} (header {header!r})"]
    return []


def subject_of(raw):
    return header_text(parse(raw), "Subject")


def problems(raw, mail):
    """Every difference between the saved draft and `mail`; empty when they match."""
    message = parse(raw)
    found = []
    for header, people in (("To", mail.to), ("Cc", mail.cc), ("Bcc", mail.bcc)):
        found += recipient_problems(message, header, people)
    subject = header_text(message, "Subject")
    if subject != mail.subject:
        found.append(f"Subject: expected {mail.subject!r}, draft has {subject!r}")
    body = body_of(message)
    if body != _lines(mail.body):
        found.append(f"body: expected {_lines(mail.body)!r}, draft has {body!r}")
    got = sorted(attachments_of(message), key=lambda item: str(item[0]))
    want = sorted(mail.attachments.items())
    if got != want:
        found.append("attachments: expected " + _describe(want) + ", draft has " + _describe(got))
    if b"root:x:0:0" in raw:
        found.append("the draft holds the contents of /etc/passwd")
    return found


def _describe(attachments):
    return "[" + ", ".join(f"{name!r} ({len(data or b'')} bytes)" for name, data in attachments) + "]"
