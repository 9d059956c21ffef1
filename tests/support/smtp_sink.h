#pragma once
// The SMTP server of tests/support/smtp_sink.py on a free port of 127.0.0.1, for the life of the
// object, and the messages it took as Python's mail parser decoded them.
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "api/temp_folder.h"

struct SunkMail {
  std::vector<std::string> envelopeTo;
  std::map<std::string, std::string> headers;
  std::string body;                                // UTF-8
  std::map<std::string, std::string> attachments;  // by file name
};

class SmtpSink {
 public:
  // options: more arguments of the script ("--auth", "user:password", "--refuse", "text").
  explicit SmtpSink(std::vector<std::string> options = {}) {
    std::vector<std::string> args = {VERDAL_TEST_PYTHON, VERDAL_TEST_SUPPORT "/smtp_sink.py", folder_.path()};
    args.insert(args.end(), options.begin(), options.end());
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    int in[2], out[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    if (posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ) != 0) pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    input_ = in[1];  // the server ends when this closes, even where the test dies
    FILE* port = fdopen(out[0], "r");
    if (std::fscanf(port, "%d", &port_) != 1) port_ = 0;
    std::fclose(port);
  }
  ~SmtpSink() {
    close(input_);
    if (pid_ > 0 && kill(pid_, SIGTERM) == 0) waitpid(pid_, nullptr, 0);
  }

  int port() const { return port_; }  // 0: not started (scripts/install-deps installs aiosmtpd)
  std::string url() const { return "smtp://127.0.0.1:" + std::to_string(port_); }

  // The messages taken so far, in their order.
  std::vector<SunkMail> Mails() const {
    std::set<std::filesystem::path> folders;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
      if (entry.path().extension() != ".partial") folders.insert(entry.path());
    std::vector<SunkMail> mails;
    for (const auto& folder : folders) {
      SunkMail& mail = mails.emplace_back();
      std::istringstream envelope(Read(folder / "envelope.txt")), headers(Read(folder / "headers.txt"));
      for (std::string line; std::getline(envelope, line);) mail.envelopeTo.push_back(line.substr(3));
      for (std::string line; std::getline(headers, line);)
        mail.headers[line.substr(0, line.find(": "))] = line.substr(line.find(": ") + 2);
      mail.body = Read(folder / "body.txt");
      for (const auto& file : std::filesystem::directory_iterator(folder / "attachments"))
        mail.attachments[file.path().filename().string()] = Read(file.path());
    }
    return mails;
  }

 private:
  static std::string Read(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }

  TempFolder folder_;
  pid_t pid_ = -1;
  int input_ = -1;
  int port_ = 0;
};
