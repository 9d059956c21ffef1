#!/usr/bin/env python3
"""SMTP server for the tests: smtp_sink.py FOLDER [--auth USER:PASSWORD] [--refuse TEXT].
Listens on 127.0.0.1 at a free port, which it prints; serves until its standard input closes.
Each message, decoded by Python's mail parser, becomes a folder FOLDER/NNNN (renamed into place
whole before the message is answered): envelope.txt ("to ADDRESS" lines), headers.txt ("Name:
value" lines), body.txt (the text/plain part, UTF-8), attachments/ (by file name), raw.eml.
--refuse refuses recipients whose address holds TEXT."""
import argparse, asyncio, email, email.policy, logging, os, sys, warnings

from aiosmtpd.smtp import SMTP, AuthResult


class Sink:
    def __init__(self, folder, refuse):
        self.folder, self.refuse, self.count = folder, refuse, 0

    async def handle_RCPT(self, server, session, envelope, address, rcpt_options):
        if self.refuse and self.refuse in address:
            return "550 mailbox unavailable"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        self.count += 1
        final = os.path.join(self.folder, "%04d" % self.count)
        work = final + ".partial"
        os.makedirs(os.path.join(work, "attachments"))
        raw = envelope.original_content
        message = email.message_from_bytes(raw, policy=email.policy.default)
        body = message.get_body(preferencelist=("plain",))
        files = {"raw.eml": raw,
                 "envelope.txt": "".join("to %s\n" % to for to in envelope.rcpt_tos),
                 "headers.txt": "".join("%s: %s\n" % (name, message[name]) for name in
                                        ("From", "To", "Cc", "Bcc", "Subject", "Date", "Message-ID")
                                        if message[name] is not None),
                 "body.txt": body.get_content() if body is not None else ""}
        for part in message.iter_attachments():
            files["attachments/" + os.path.basename(part.get_filename())] = part.get_payload(decode=True)
        for name, content in files.items():
            with open(os.path.join(work, name), "wb") as f:
                f.write(content if isinstance(content, bytes) else content.encode())
        os.rename(work, final)
        return "250 OK"


async def main():
    warnings.simplefilter("ignore")  # a login without TLS is what the tests want
    logging.getLogger("mail.log").setLevel(logging.ERROR)
    parser = argparse.ArgumentParser()
    parser.add_argument("folder")
    parser.add_argument("--auth")
    parser.add_argument("--refuse")
    args = parser.parse_args()
    options = {}
    if args.auth:
        login = args.auth.encode().split(b":", 1)
        options = dict(auth_required=True, auth_require_tls=False, authenticator=lambda server, session, envelope,
                       mechanism, data: AuthResult(success=[data.login, data.password] == login, handled=False))
    loop = asyncio.get_running_loop()
    sink = Sink(args.folder, args.refuse)
    server = await loop.create_server(lambda: SMTP(sink, hostname="localhost", **options), "127.0.0.1", 0)
    print(server.sockets[0].getsockname()[1], flush=True)
    done = loop.create_future()
    loop.add_reader(0, lambda: os.read(0, 4096) or done.done() or done.set_result(None))
    await done


if __name__ == "__main__":
    asyncio.run(main())
