"""A print server with one printer, for tests: it keeps what it is sent and prints nothing.

Usage: print_queue.py FOLDER PRINTER [JOBS]. Writes its port on standard output and serves until it
is killed, or ends itself when more jobs come than JOBS. Each job becomes FOLDER/N.pdf and
FOLDER/N.json, the job's attributes.
"""

import http.server
import json
import os
import struct
import sys
import urllib.parse

folder, printer = sys.argv[1:3]
most_jobs = int(sys.argv[3]) if len(sys.argv) > 3 else None

OPERATION, JOB, END, PRINTER = 1, 2, 3, 4
INTEGER, BOOLEAN, ENUM, NAME, KEYWORD, URI, CHARSET, LANGUAGE = (
    0x21, 0x22, 0x23, 0x42, 0x44, 0x45, 0x47, 0x48)
CREATE_JOB, SEND_DOCUMENT = 5, 6
GET_PRINTERS = 0x4002

# An A4 and A5 printer that leaves 12 points blank on each side.
PPD = '''*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "TEST.PPD"
*Manufacturer: "Test"
*Product: "(Test)"
*ModelName: "Test"
*ShortNickName: "Test"
*NickName: "Test"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*OpenUI *PageSize: PickOne
*DefaultPageSize: A4
*PageSize A4: ""
*PageSize A5: ""
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*DefaultPageRegion: A4
*PageRegion A4: ""
*PageRegion A5: ""
*CloseUI: *PageRegion
*DefaultImageableArea: A4
*ImageableArea A4: "12 12 583 830"
*ImageableArea A5: "12 12 408 583"
*DefaultPaperDimension: A4
*PaperDimension A4: "595 842"
*PaperDimension A5: "420 595"
'''


def attribute(tag, name, value):
    if tag in (INTEGER, ENUM):
        data = struct.pack('>i', value)
    elif tag == BOOLEAN:
        data = bytes([value])
    else:
        data = value.encode()
    key = name.encode()
    return bytes([tag]) + struct.pack('>H', len(key)) + key + struct.pack('>H', len(data)) + data


def attributes_of(message):
    """The attributes of a request by name, and what follows them."""
    values, at = {}, 8
    while message[at] != END:
        if message[at] < 0x10:  # a group begins
            at += 1
            continue
        tag = message[at]
        size, = struct.unpack_from('>H', message, at + 1)
        name = message[at + 3:at + 3 + size].decode()
        at += 3 + size
        size, = struct.unpack_from('>H', message, at)
        data = message[at + 2:at + 2 + size]
        at += 2 + size
        if tag in (INTEGER, ENUM):
            values[name] = struct.unpack('>i', data)[0]
        elif tag != BOOLEAN and name:
            values[name] = data.decode(errors='replace')
    return values, message[at + 1:]


class Server(http.server.BaseHTTPRequestHandler):
    protocol_version = 'HTTP/1.1'
    jobs = 0

    def log_message(self, *_):
        pass

    def do_GET(self):
        self.answer('application/vnd.cups-ppd', PPD.encode())

    def do_POST(self):
        message = self.body()
        operation, request = struct.unpack_from('>HI', message, 2)
        values, document = attributes_of(message)
        groups = b''
        if operation == CREATE_JOB:
            if Server.jobs == most_jobs:
                os._exit(0)
            Server.jobs += 1
            self.keep('json', json.dumps(values).encode())
            groups = self.job()
        elif operation == SEND_DOCUMENT:
            self.keep('pdf', document)
            groups = self.job()
        else:
            groups = self.printer()
        self.answer('application/ipp', b''.join([
            b'\2\0\0\0', struct.pack('>I', request), bytes([OPERATION]),
            attribute(CHARSET, 'attributes-charset', 'utf-8'),
            attribute(LANGUAGE, 'attributes-natural-language', 'en'), groups, bytes([END])]))

    def printer(self):
        uri = f'ipp://localhost:{self.server.server_port}/printers/{urllib.parse.quote(printer)}'
        return b''.join([
            bytes([PRINTER]), attribute(NAME, 'printer-name', printer),
            attribute(URI, 'printer-uri-supported', uri), attribute(URI, 'device-uri', 'test:/'),
            attribute(NAME, 'printer-info', 'Test'), attribute(ENUM, 'printer-state', 3),
            attribute(KEYWORD, 'printer-state-reasons', 'none'),
            attribute(BOOLEAN, 'printer-is-accepting-jobs', 1),
            attribute(ENUM, 'printer-type', 4)])

    def job(self):
        return b''.join([bytes([JOB]), attribute(INTEGER, 'job-id', Server.jobs),
                         attribute(URI, 'job-uri', f'ipp://localhost/jobs/{Server.jobs}'),
                         attribute(ENUM, 'job-state', 3)])

    def keep(self, suffix, data):
        with open(os.path.join(folder, f'{Server.jobs}.{suffix}'), 'wb') as file:
            file.write(data)

    def body(self):
        if self.headers.get('Transfer-Encoding', '').lower() != 'chunked':
            return self.rfile.read(int(self.headers.get('Content-Length', 0)))
        data = b''
        while size := int(self.rfile.readline(), 16):
            data += self.rfile.read(size)
            self.rfile.readline()
        self.rfile.readline()
        return data

    def answer(self, kind, data):
        self.send_response(200)
        self.send_header('Content-Type', kind)
        self.send_header('Content-Length', str(len(data)))
        self.end_headers()
        self.wfile.write(data)


server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), Server)
server.daemon_threads = True
print(server.server_port, flush=True)
server.serve_forever()
