"""An X session manager for one program: prints its address, then ends the session when a line comes on its input.

Lines that it prints: the address for SESSION_MANAGER; "registered" when the program has joined; "saved" when the program
has committed its data; "left" when the program has closed the connection.
"""
import ctypes
import select
import sys

ICE = ctypes.CDLL("libICE.so.6")
SM = ctypes.CDLL("libSM.so.6")

SAVE_LOCAL, SAVE_BOTH = 1, 2
INTERACT_NONE, INTERACT_ANY = 0, 2
CONNECT_PENDING = 0
PROCESS_SUCCESS = 0
EVERY_CALLBACK = 0x3FF
TEXT_LENGTH = 256

Pointer, Text, Int = ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int
Allow = ctypes.CFUNCTYPE(Int, Text)
IoError = ctypes.CFUNCTYPE(None, Pointer)
NewClient = ctypes.CFUNCTYPE(Int, Pointer, Pointer, ctypes.POINTER(ctypes.c_ulong), Pointer, Pointer)

# In the order of the structure SmsCallbacks.
CALLBACK_TYPES = (
    ctypes.CFUNCTYPE(Int, Pointer, Pointer, Text),  # register client
    ctypes.CFUNCTYPE(None, Pointer, Pointer, Int),  # interact request
    ctypes.CFUNCTYPE(None, Pointer, Pointer, Int),  # interact done
    ctypes.CFUNCTYPE(None, Pointer, Pointer, Int, Int, Int, Int, Int),  # save yourself request
    ctypes.CFUNCTYPE(None, Pointer, Pointer),  # phase 2 request
    ctypes.CFUNCTYPE(None, Pointer, Pointer, Int),  # save yourself done
    ctypes.CFUNCTYPE(None, Pointer, Pointer, Int, Pointer),  # close connection
    ctypes.CFUNCTYPE(None, Pointer, Pointer, Int, ctypes.POINTER(Pointer)),  # set properties
    ctypes.CFUNCTYPE(None, Pointer, Pointer, Int, Pointer),  # delete properties
    ctypes.CFUNCTYPE(None, Pointer, Pointer),  # get properties
)

ICE.IceComposeNetworkIdList.restype = Text
ICE.IceAcceptConnection.restype = Pointer
SM.SmsGenerateClientID.restype = Pointer
SM.SmsGenerateClientID.argtypes = [Pointer]
SM.SmsRegisterClientReply.argtypes = [Pointer, Pointer]
SM.SmsSaveYourself.argtypes = [Pointer, Int, Int, Int, Int]
SM.SmsSaveYourselfPhase2.argtypes = SM.SmsSaveComplete.argtypes = SM.SmsDie.argtypes = [Pointer]
SM.SmFreeProperty.argtypes = SM.SmsCleanUp.argtypes = [Pointer]
for function in ("IceConnectionNumber", "IceConnectionStatus", "IceGetListenConnectionNumber"):
    getattr(ICE, function).argtypes = [Pointer]
ICE.IceProcessMessages.argtypes = [Pointer, Pointer, Pointer]
ICE.IceSetHostBasedAuthProc.argtypes = [Pointer, Allow]


def say(line):
    print(line, flush=True)


class SessionManager:
    def __init__(self):
        self.client = None
        self.ending = False
        handlers = (self._register, self._nothing, self._nothing, self._nothing, self._phase2, self._saved, self._leave,
                    self._free_properties, self._nothing, self._nothing)
        self._callbacks = [kind(handler) for kind, handler in zip(CALLBACK_TYPES, handlers)]
        self._keep = (Allow(lambda _: 1), NewClient(self._accept_client), IoError(lambda _: None))
        allow, new_client, io_error = self._keep
        ICE.IceSetIOErrorHandler(io_error)
        problem = ctypes.create_string_buffer(TEXT_LENGTH)
        if not SM.SmsInitialize(b"Test", b"1", new_client, None, allow, TEXT_LENGTH, problem):
            sys.exit(problem.value.decode())
        count, self._listeners = Int(), ctypes.POINTER(Pointer)()
        if not ICE.IceListenForConnections(
                ctypes.byref(count), ctypes.byref(self._listeners), TEXT_LENGTH, problem):
            sys.exit(problem.value.decode())
        self._doors = {}
        for index in range(count.value):
            ICE.IceSetHostBasedAuthProc(self._listeners[index], allow)
            self._doors[ICE.IceGetListenConnectionNumber(self._listeners[index])] = self._listeners[index]
        say(ICE.IceComposeNetworkIdList(count, self._listeners).decode())

    def run(self):
        connections = {}
        while True:
            ready, _, _ = select.select([sys.stdin, *self._doors, *connections], [], [])
            for source in ready:
                if source is sys.stdin:
                    if not sys.stdin.readline():
                        return
                    self.ending = True
                    SM.SmsSaveYourself(self.client, SAVE_BOTH, True, INTERACT_ANY, False)
                elif source in self._doors:
                    connection = self._accept(self._doors[source])
                    connections[ICE.IceConnectionNumber(connection)] = connection
                elif ICE.IceProcessMessages(connections[source], None, None) != PROCESS_SUCCESS:
                    del connections[source]
                    say("left")

    @staticmethod
    def _accept(listener):
        status = Int()
        connection = ICE.IceAcceptConnection(ctypes.c_void_p(listener), ctypes.byref(status))
        while ICE.IceConnectionStatus(connection) == CONNECT_PENDING:
            ICE.IceProcessMessages(connection, None, None)
        return connection

    def _accept_client(self, client, _data, mask, callbacks, _reason):
        self.client = client
        mask[0] = EVERY_CALLBACK
        slots = ctypes.cast(callbacks, ctypes.POINTER(Pointer))
        for index, callback in enumerate(self._callbacks):
            slots[2 * index] = ctypes.cast(callback, Pointer).value  # then its data, which stays null
            slots[2 * index + 1] = None
        return 1

    def _register(self, client, _data, previous):
        if previous:
            return 0
        SM.SmsRegisterClientReply(client, SM.SmsGenerateClientID(client))
        SM.SmsSaveYourself(client, SAVE_LOCAL, False, INTERACT_NONE, False)  # the protocol's first step for a new program
        say("registered")
        return 1

    def _saved(self, client, _data, _success):
        if self.ending:
            say("saved")
            SM.SmsDie(client)
        else:
            SM.SmsSaveComplete(client)

    @staticmethod
    def _phase2(client, _data):
        SM.SmsSaveYourselfPhase2(client)

    @staticmethod
    def _free_properties(_client, _data, count, properties):
        for index in range(count):
            SM.SmFreeProperty(properties[index])

    @staticmethod
    def _leave(client, *_):
        SM.SmsCleanUp(client)
        say("left")

    @staticmethod
    def _nothing(*_):
        pass


if __name__ == "__main__":
    SessionManager().run()
