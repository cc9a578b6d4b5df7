# SPDX-License-Identifier: GPL-3.0-or-later
"""A print server with one printer, as far as a program that prints asks it."""

import struct
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

PRINTER = "pen"

# Operations and answers of the Internet Printing Protocol.
PRINT_JOB, CREATE_JOB, SEND_DOCUMENT = 0x0002, 0x0005, 0x0006
GET_DEFAULT, GET_PRINTERS, GET_ATTRIBUTES = 0x4001, 0x4002, 0x000B
OK, NOT_FOUND, NOT_ACCEPTING = 0x0000, 0x0406, 0x0506

# Tags of groups and values.
OPERATION, JOB, END, PRINTER_GROUP = 0x01, 0x02, 0x03, 0x04
INTEGER, BOOLEAN, ENUM, TEXT, NAME, KEYWORD, URI, CHARSET, LANGUAGE = 0x21, 0x22, 0x23, 0x41, 0x42, 0x44, 0x45, 0x47, 0x48

DESCRIPTION = """*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "PEN.PPD"
*Manufacturer: "Pen"
*Product: "(Pen)"
*ModelName: "Pen"
*ShortNickName: "Pen"
*NickName: "Pen"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*OpenUI *PageSize: PickOne
*OrderDependency: 10 AnySetup *PageSize
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*OrderDependency: 10 AnySetup *PageRegion
*DefaultPageRegion: A4
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: A4
*ImageableArea A4/A4: "12 12 583 830"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
"""


def attribute(tag, name, value):
    if isinstance(value, str):
        value = value.encode()
    elif tag == BOOLEAN:
        value = struct.pack(">B", value)
    else:
        value = struct.pack(">i", value)
    return struct.pack(">BH", tag, len(name)) + name.encode() + struct.pack(">H", len(value)) + value


class PrintServer:
    """Runs until it is left. Takes jobs while it is `accepting`."""

    def __init__(self):
        self.accepting = True
        self.jobs = []  # what was sent, as bytes
        self.asked = []  # the operations, in their order
        server = self

        class Handler(BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def log_message(self, *_):
                pass

            def body(self):
                if self.headers.get("Transfer-Encoding", "") != "chunked":
                    return self.rfile.read(int(self.headers.get("Content-Length", 0)))
                parts = []
                while size := int(self.rfile.readline().split(b";")[0], 16):
                    parts.append(self.rfile.read(size))
                    self.rfile.readline()
                self.rfile.readline()
                return b"".join(parts)

            def answer(self, kind, content, code=200):
                self.send_response(code)
                self.send_header("Content-Type", kind)
                self.send_header("Content-Length", str(len(content)))
                self.end_headers()
                if self.command != "HEAD":
                    self.wfile.write(content)

            def do_GET(self):
                if self.path == f"/printers/{PRINTER}.ppd":
                    self.answer("application/vnd.cups-ppd", DESCRIPTION.encode())
                else:
                    self.answer("text/plain", b"", 404)

            do_HEAD = do_GET

            def do_POST(self):
                self.answer("application/ipp", server.answer_to(self.body()))

        self.http = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.http.daemon_threads = True
        self.address = "127.0.0.1:%d" % self.http.server_address[1]
        self.thread = threading.Thread(target=self.http.serve_forever, args=(0.05,))

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.http.shutdown()
        self.thread.join()
        self.http.server_close()

    def printer(self):
        return bytes([PRINTER_GROUP]) + b"".join(
            (
                attribute(NAME, "printer-name", PRINTER),
                attribute(URI, "printer-uri-supported", f"ipp://{self.address}/printers/{PRINTER}"),
                attribute(URI, "device-uri", "file:///dev/null"),
                attribute(ENUM, "printer-type", 0x100C),
                attribute(ENUM, "printer-state", 3),
                attribute(KEYWORD, "printer-state-reasons", "none"),
                attribute(BOOLEAN, "printer-is-accepting-jobs", self.accepting),
                attribute(BOOLEAN, "printer-is-shared", False),
                attribute(TEXT, "printer-info", "Pen"),
                attribute(TEXT, "printer-make-and-model", "Pen"),
            )
        )

    def answer_to(self, request):
        operation, number = struct.unpack(">HI", request[2:8])
        self.asked.append(operation)
        status, rest, words = OK, b"", ""
        if operation in (GET_PRINTERS, GET_DEFAULT, GET_ATTRIBUTES):
            rest = self.printer()
        elif operation in (PRINT_JOB, CREATE_JOB) and not self.accepting:
            status, words = NOT_ACCEPTING, f'Destination "{PRINTER}" is not accepting jobs.'
        elif operation in (PRINT_JOB, CREATE_JOB, SEND_DOCUMENT):
            if operation != CREATE_JOB:
                self.jobs.append(request)
            rest = bytes([JOB]) + b"".join(
                (
                    attribute(INTEGER, "job-id", 7),
                    attribute(URI, "job-uri", f"ipp://{self.address}/jobs/7"),
                    attribute(ENUM, "job-state", 3),
                )
            )
        else:
            status = NOT_FOUND
        head = struct.pack(">BBHI", 2, 0, status, number) + bytes([OPERATION])
        head += attribute(CHARSET, "attributes-charset", "utf-8") + attribute(LANGUAGE, "attributes-natural-language", "en")
        if words:
            head += attribute(TEXT, "status-message", words)
        return head + rest + bytes([END])
