"""The draft checker must reject what broken hand-offs produce, or the real-client tests
would prove nothing. Run: python3 -m unittest discover -s tests/real-clients"""

import email.header
import unittest
from email.message import EmailMessage

import drafts
from mails import HOSTILE

GOOD = {
    "To": '"Doe, John" <jd@example.org>, =?UTF-8?Q?M=C3=BCller=2C_J=C3=B6rg?= <jm@example.org>,'
          " -dash@example.org",
    "Cc": "cc@example.org, x@y.org', attachment='file:///etc/passwd', bcc='",
    "Bcc": '"Audit, Team" <audit@example.org>',
    "Subject": email.header.Header(HOSTILE.subject, "utf-8").encode(),
}


def draft(body=HOSTILE.body.replace("\r\n", "\n"), attachments=None, **headers):
    message = EmailMessage()
    message.set_content(body)
    for name, data in (HOSTILE.attachments if attachments is None else attachments).items():
        maintype, subtype = ("text", "plain") if name.endswith(".txt") else ("application", "octet-stream")
        if maintype == "text":
            message.add_attachment(data.decode(), subtype=subtype, filename=name)
        else:
            message.add_attachment(data, maintype=maintype, subtype=subtype, filename=name)
    fields = {**GOOD, **{name.capitalize(): value for name, value in headers.items()}}
    head = "".join(f"{name}: {value}\n" for name, value in fields.items() if value is not None)
    return head.encode() + message.as_bytes()


def with_file(name, data):
    return {**HOSTILE.attachments, name: data}


BROKEN = [
    ("display name split at its comma", {"to": "Doe, John <jd@example.org>, -dash@example.org"}),
    ("encoded display name split at its comma",
     {"to": '"Doe, John" <jd@example.org>, =?UTF-8?Q?M=C3=BCller?=, =?UTF-8?Q?J=C3=B6rg?= <jm@example.org>,'
            " -dash@example.org"}),
    ("a leading dash lost", {"to": GOOD["To"].replace("-dash", "dash")}),
    ("Bcc lost", {"bcc": None}),
    ("the invalid Cc made deliverable", {"cc": "cc@example.org, x@y.org"}),
    ("the invalid Cc gone", {"cc": "cc@example.org"}),
    ("a recipient added", {"cc": GOOD["Cc"] + ", evil@example.org"}),
    ("subject cut at \\c", {"subject": email.header.Header(HOSTILE.subject.split("\\c")[0], "utf-8").encode()}),
    ("backslash read as a line break", {"body": HOSTILE.body.replace("\\new", "\new")}),
    ("body cut", {"body": HOSTILE.body.split("\r\n")[0]}),
    ("an attachment missing", {"attachments": dict(list(HOSTILE.attachments.items())[1:])}),
    ("an attachment renamed", {"attachments": {k.replace(",", ""): v for k, v in HOSTILE.attachments.items()}}),
    ("bytes changed", {"attachments": with_file("it's \"quoted\".bin", bytes(range(255)))}),
    ("/etc/passwd attached", {"attachments": with_file("passwd", b"root:x:0:0::/:/bin/sh\n")}),
]


class DraftCheckerTest(unittest.TestCase):
    def test_a_faithful_draft_passes(self):
        self.assertEqual(drafts.problems(draft(), HOSTILE), [])

    def test_every_broken_draft_is_rejected(self):
        for description, change in BROKEN:
            with self.subTest(description):
                self.assertNotEqual(drafts.problems(draft(**change), HOSTILE), [])


if __name__ == "__main__":
    unittest.main()
