"""What differs between the real clients: how a throw-away HOME makes each one start
without a first-run wizard, which desktop entry registers it for mailto links, how its
compose window is named and where it saves drafts."""

import mailbox
import os
import re
import shutil
from pathlib import Path

PROFILES = Path(__file__).resolve().parent / "profiles"


def _write(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)


class Client:
    name = ""        # the program, also the name the test reports
    desktop_id = ""  # the desktop entry registered as the default mailto handler
    exec_line = ""   # its Exec key, in one of the forms desktop entries use

    def prepare(self, home):
        """Registers the client as the mailto handler of `home` and gives it a profile."""
        entry = (f"[Desktop Entry]\nType=Application\nName={self.name}\nExec={self.exec_key()}\n"
                 "MimeType=x-scheme-handler/mailto;\nTerminal=false\n")
        _write(home / ".local/share/applications" / self.desktop_id, entry)
        _write(home / ".config/mimeapps.list",
               f"[Default Applications]\nx-scheme-handler/mailto={self.desktop_id}\n")
        self.write_profile(home)

    def exec_key(self):
        return self.exec_line

    def write_profile(self, home):
        pass

    def window_pattern(self, key):
        """A regular expression (for xdotool) of the compose window's name."""
        return re.escape(key)

    def drafts(self, home):
        """The raw messages saved as drafts so far."""
        raise NotImplementedError


class Thunderbird(Client):
    name = "thunderbird"
    desktop_id = "thunderbird.desktop"
    exec_line = "thunderbird %u"

    def exec_key(self):
        # The program's full path, as Debian's own entry names it.
        return f"{shutil.which('thunderbird') or 'thunderbird'} %u"

    def write_profile(self, home):
        profile = home / ".thunderbird/test.profile"
        profile.mkdir(parents=True)
        shutil.copy(PROFILES / "thunderbird/profiles.ini", home / ".thunderbird")
        shutil.copy(PROFILES / "thunderbird/prefs.js", profile)

    def window_pattern(self, key):
        return "^Write: .*" + re.escape(key)

    def drafts(self, home):
        path = home / ".thunderbird/test.profile/Mail/Local Folders/Drafts"
        if not path.exists():
            return []
        # A draft saved again replaces the old copy, which stays in the file marked deleted.
        return [message.as_bytes() for message in mailbox.mbox(path)
                if not int(message.get("X-Mozilla-Status", "0"), 16) & 0x0008]


class ClawsMail(Client):
    name = "claws-mail"
    desktop_id = "claws-mail.desktop"
    exec_line = "claws-mail %u"

    def write_profile(self, home):
        for file in ("accountrc", "folderlist.xml", "clawsrc"):
            _write(home / ".claws-mail" / file, (PROFILES / "claws-mail" / file).read_text())
        for folder in ("inbox", "sent", "draft", "queue", "trash"):
            (home / "Mail" / folder).mkdir(parents=True)

    def window_pattern(self, key):
        return re.escape(key) + ".* - Compose message"

    def drafts(self, home):
        folder = home / "Mail/draft"
        return [path.read_bytes() for path in sorted(folder.iterdir(), key=lambda p: p.name)
                if path.name.isdigit()]


class Evolution(Client):
    name = "evolution"
    desktop_id = "org.gnome.Evolution.desktop"
    exec_line = "env GTK_THEME=Adwaita evolution %U"  # a variable set through env

    def drafts(self, home):
        folder = home / ".local/share/evolution/mail/local/.Drafts"
        files = [path for sub in ("new", "cur") if (folder / sub).is_dir()
                 for path in (folder / sub).iterdir()]
        return [path.read_bytes() for path in sorted(files, key=os.path.getmtime)]


CLIENTS = {client.name: client for client in (Thunderbird(), ClawsMail(), Evolution())}
