#pragma once

#include <map>
#include <string>
#include <vector>

// What the stand-in mail client received, as UTF-8 text.
struct RecordedMail {
    std::string subject;
    std::string note;
    std::vector<std::string> to;
    std::vector<std::string> cc;
    std::vector<std::string> bcc;
    std::vector<std::string> attachments;  // full local paths
};

// A stand-in for the user's mail client that records the mail the tool hands it and
// answers with a chosen result. Each platform implements it in its own folder: on Windows
// a recording MAPI32.DLL beside a copy of the tool, on Linux a throw-away HOME whose mailto
// handler is a recording program first on PATH.
class RecordingMailClient {
public:
    enum class Kind {
        Default,        // the platform's usual client (MAPI; on Linux a Thunderbird-family client)
        Other,          // Linux: a client given a plain mailto URI; Windows: as Default
        NoSendFunction, // Windows: a MAPI32.DLL without MAPISendMail; Linux: as Default
        Missing,        // no mail client at all
    };

    // Sets the stand-in up in `workDir`, a fresh folder the test owns.
    RecordingMailClient(const std::string& workDir, Kind kind = Kind::Default);
    ~RecordingMailClient();

    // The result the client answers with (a Simple MAPI code; 0 is success).
    void setResult(int result);
    // The tool to run, and the environment variables it needs to find the stand-in.
    std::string mailerPath() const;
    std::map<std::string, std::string> environment() const;
    // Whether the client was started, and what it received.
    bool wasCalled() const;
    RecordedMail lastMail() const;

private:
    struct State;
    State* m_state;
};

// Runs the tool with UTF-8 arguments in `workDir` with extra environment variables and
// answers its exit code as the tool returned it (so -1 stays -1 on POSIX too).
int runMailer(const std::string& mailer, const std::vector<std::string>& args, const std::string& workDir,
              const std::map<std::string, std::string>& environment);
