// A converter that starts and then never answers: the host's time-out has to end it.
process.stdout.write('READY\n');
process.stdin.on('data', () => {});
setInterval(() => {}, 1000);
