"""Reads a saved draft and compares it with the mail that was handed off."""

import email
import email.policy
import email.utils
import re


def parse(raw):
    return email.message_from_bytes(raw, policy=email.policy.default)


def _unflowed(text):
    """Undoes format=flowed (RFC 3676): soft breaks joined, space stuffing removed."""
    lines = [line[1:] if line.startswith(" ") else line for line in text.split("\n")]
    out = []
    for line in lines:
        if out and out[-1].endswith(" ") and out[-1] != "-- ":
            out[-1] += line
        else:
            out.append(line)
    return "\n".join(out)


def _lines(text):
    """Line breaks as LF and the trailing blank lines clients add dropped."""
    return text.replace("\r\n", "\n").replace("\r", "\n").rstrip("\n")


def body_of(message):
    part = message.get_body(preferencelist=("plain",))
    if part is None:
        return None
    text = part.get_content()
    if part.get_param("format", "").lower() == "flowed":
        text = _unflowed(text.replace("\r\n", "\n"))
    return _lines(text)


def attachments_of(message):
    """Every part but the body: (file name, bytes), in the draft's order."""
    body = message.get_body(preferencelist=("plain", "html"))
    found = []
    for part in message.walk():
        if part.is_multipart() or part is body:
            continue
        if part.get_content_type() == "text/html" and part.get_filename() is None:
            continue  # the HTML alternative of the body
        found.append((part.get_filename(), part.get_payload(decode=True)))
    return found


def header_text(message, name):
    values = message.get_all(name) or []
    return ", ".join(re.sub(r"\s*\r?\n\s*", " ", str(v)) for v in values)


def recipient_problems(message, name, expected):
    """Each expected recipient must be one address with its display name intact, and
    nothing else may be there. An invalid address must arrive as its verbatim text."""
    text = header_text(message, name)
    problems = []
    for person in expected:
        if person.address is None:
            if person.text not in text:
                problems.append(f"{name}: {person.text!r} not kept verbatim in {text!r}")
            text = text.replace(f'"{person.text}"', "").replace(person.text, "")
    got = [(n, a) for n, a in email.utils.getaddresses([text]) if n or a]
    want = [(p.name, p.address) for p in expected if p.address is not None]
    if sorted(got) != sorted(want):
        problems.append(f"{name}: expected {want}, draft has {got} (header {header_text(message, name)!r})")
    return problems


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
