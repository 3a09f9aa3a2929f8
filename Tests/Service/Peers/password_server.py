"""An SSH server for one password, which needs no account of the system: password_server.py PORT PASSWORD

Forwards to wherever it is asked to. Prints its port as soon as it listens; the system picks one for 0.
"""

import asyncio
import sys

import asyncssh


class Server(asyncssh.SSHServer):
    def begin_auth(self, username):
        return True

    def password_auth_supported(self):
        return True

    def validate_password(self, username, password):
        return password == sys.argv[2]

    def connection_requested(self, *peer):
        return True


async def main():
    key = asyncssh.generate_private_key("ssh-ed25519")
    server = await asyncssh.listen("127.0.0.1", int(sys.argv[1]), server_factory=Server, server_host_keys=[key])
    print(server.sockets[0].getsockname()[1], flush=True)
    await asyncio.Event().wait()


asyncio.run(main())
