// A client that is not ours, the module serialport, at one simulated instrument: opens the port at the instrument's
// settings and asks for the weight. One argument: the row that node_client/run gives, as JSON.

const { SerialPort } = require('serialport');

const PATIENCE = 30000; // ms; an answer is there at once, but the computer may be busy
const PARITIES = { N: 'none', E: 'even', O: 'odd' };

const row = JSON.parse(process.argv[2]);
const wanted = Buffer.from(row.answer, 'latin1');
let received = Buffer.alloc(0);

function end(complaint) {
  if (complaint) console.log(complaint);
  process.exit(complaint ? 1 : 0);
}

const port = new SerialPort({
  path: row.device,
  baudRate: row.line[0],
  dataBits: row.line[1],
  parity: PARITIES[row.line[2]],
  stopBits: row.line[3],
});

port.on('error', (error) => end(error.message));
port.on('open', () => port.write(Buffer.from(row.sent, 'latin1')));
port.on('data', (bytes) => {
  received = Buffer.concat([received, bytes]);
  if (received.length < wanted.length) return;
  const isRight = received.equals(wanted);
  port.close(() => end(isRight ? '' : `${JSON.stringify(received.toString('latin1'))} instead of ${row.answer}`));
});
setTimeout(() => end(`${received.length} characters of ${wanted.length} within ${PATIENCE} ms`), PATIENCE);
