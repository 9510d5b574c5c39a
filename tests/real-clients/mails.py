"""The mails handed to each real client, and the mailer files that describe them."""

from dataclasses import dataclass, field
from urllib.parse import quote
from xml.sax.saxutils import escape

# The text a hostile Cc tries to smuggle in: read as a Thunderbird -compose list or a mailto
# query by a careless hand-off, it would add /etc/passwd as an attachment and end the Cc.
INJECTING_CC = "x@y.org',attachment='file:///etc/passwd',bcc='"


@dataclass
class Recipient:
    text: str     # as the caller writes it in the mailer file
    name: str     # the display name the draft must keep
    address: str  # the one address the draft must hold for it; None for a text that is
                  # no address and must stay visibly invalid


@dataclass
class Mail:
    key: str      # an ASCII word of the subject: finds the compose window and the draft
    subject: str
    body: str
    to: list
    cc: list
    bcc: list
    attachments: dict = field(default_factory=dict)  # file name -> bytes

    def mailer_file(self, folder):
        """The mailer file's XML, with attachment URIs pointing into `folder`."""
        def text(value):
            # Line breaks as character references: raw ones would be condensed to blanks.
            return escape(value).replace("\r", "&#13;").replace("\n", "&#10;")

        def recipients(tag, people):
            inner = "".join(f"<recipient>{text(p.text)}</recipient>" for p in people)
            return f"<{tag}>{inner}</{tag}>"

        uris = "".join(f"<attachment>{text('file://' + quote(f'{folder}/{name}'))}</attachment>"
                       for name in self.attachments)
        return ('<?xml version="1.0" encoding="UTF-8"?>\n<mailerfile>'
                f"<subject>{text(self.subject)}</subject><note>{text(self.body)}</note>"
                + recipients("torecipients", self.to) + recipients("ccrecipients", self.cc)
                + recipients("bccrecipients", self.bcc)
                + f"<attachments>{uris}</attachments></mailerfile>\n")


PLAIN = Mail(
    key="Plainmail",
    subject="Quarterly report Plainmail",
    body="Hello Anna,\n\nplease find the report attached.\n\nKind regards\nJoe",
    to=[Recipient("anna@example.org", "", "anna@example.org"),
        Recipient("Bob Builder <bob@example.org>", "Bob Builder", "bob@example.org")],
    cc=[Recipient("team@example.org", "", "team@example.org")],
    bcc=[Recipient("archive@example.org", "", "archive@example.org")],
    attachments={"report.txt": b"Revenue: 42\nCosts: 41\n"},
)

HOSTILE = Mail(
    key="Hostilemail",
    subject='-Grüße, "Anführung" & C:\\new\\cdir 100% ?a=1&b=2 Hostilemail',
    body=("--help\r\nC:\\new\\cdir and \\\\server\\share\\x\r\n"
          "-n a line that starts with a dash\r\n"
          "Ünïcödé € 𝄞, %20 %0A & ?subject=x&attach=file:///etc/passwd\r\n"
          "cc=',attachment='file:///etc/passwd',\r\nlast line"),
    to=[Recipient("Doe, John <jd@example.org>", "Doe, John", "jd@example.org"),
        Recipient("Müller, Jörg <jm@example.org>", "Müller, Jörg", "jm@example.org"),
        Recipient("-dash@example.org", "", "-dash@example.org")],
    cc=[Recipient("cc@example.org", "", "cc@example.org"),
        Recipient(INJECTING_CC, "", None)],
    bcc=[Recipient("Audit, Team <audit@example.org>", "Audit, Team", "audit@example.org")],
    attachments={
        "report Q3, final.txt": "Grüße\nC:\\new\\cdir\n".encode(),
        "it's \"quoted\".bin": bytes(range(256)),
        "-dash & more.txt": b"--help\n",
        "50%41 off #2 ?x=1.txt": b"percent, hash and question mark in the name\n",
    },
)

MAILS = [PLAIN, HOSTILE]
