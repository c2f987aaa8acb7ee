"""A package with a thousand secrets: addresses of all forms, and names of hosts and users. Always the same."""

import gzip
import io
import ipaddress
import random
import tarfile
from dataclasses import dataclass

COUNT = 1000
FRAMES = ("{} ", "<{}>", "({})", '"{}"', "={};", "\t{}\t", "|{}|", "from {}, then", "[{}]", "{}\n")
NOISE = ("12:34:56", "counter 4711", "NetFP::Proxy", "1.2.3", "127.0.0.1", "::1", "ff02::1", "224.0.0.5",
         "255.255.255.255", "00:00:00:00:00:00", "ff:ff:ff:ff:ff:ff", "0.0.0.0", "root", "daemon", "fuse/iwf", "::")


@dataclass
class Secret:
    key: str  # the same for all spellings
    kind: str
    spellings: list[str]
    introduction: str  # a line that shows what it is


def ipv4(rng: random.Random, number: int) -> Secret:
    octets = [(10, 172, 192, 100, 8)[number % 5], *(rng.randrange(256) for _ in range(3))]
    plain = ".".join(map(str, octets))
    padded = ".".join(f"{octet:03}" for octet in octets)
    return Secret(plain, "ipv4", [plain, padded, f"::ffff:{plain}"], f"peer {plain} is up")


def ipv6(rng: random.Random, number: int) -> Secret:
    network = (0x20010DB8 << 96, 0xFD << 120 | rng.getrandbits(40) << 80, 0xFE80 << 112)[number % 3]
    address = ipaddress.IPv6Address(network | 0x10 << 56 | rng.getrandbits(32) << 16 | 1)
    groups = address.exploded.split(":")
    shorter = ":".join(group.lstrip("0") or "0" for group in groups)
    return Secret(str(address), "ipv6", [str(address), str(address).upper(), address.exploded, shorter],
                  f"route to {address}/64")


def mac(rng: random.Random, number: int) -> Secret:
    digits = f"{rng.getrandbits(48) & ~(1 << 40) | 4 << 44:012x}"
    pairs = [digits[place:place + 2] for place in range(0, 12, 2)]
    dotted = ".".join(digits[place:place + 4] for place in range(0, 12, 4))
    return Secret(digits, "mac", [":".join(pairs), "-".join(pairs).upper(), dotted, digits],
                  f"link/ether {':'.join(pairs)}")


def interface_id(rng: random.Random, number: int) -> Secret:
    """The address that a host makes from its MAC."""
    digits = f"{rng.getrandbits(48) & ~(1 << 40) | 4 << 44:012x}"
    eui = bytes.fromhex(digits[:6] + "fffe" + digits[6:])
    address = ipaddress.IPv6Address(bytes.fromhex("fe80000000000000") + bytes([eui[0] ^ 2]) + eui[1:])
    return Secret(str(address), "ipv6", [str(address), str(address).upper(), address.exploded], f"inet6 {address}/64")


def host(rng: random.Random, number: int) -> Secret:
    name = f"bts-{letters(rng)}{number}"
    return Secret(name, "name", [name, name.upper(), name.capitalize()], f"Nov 22 08:30:33 {name} netfp: up")


def user(rng: random.Random, number: int) -> Secret:
    name = f"op{letters(rng)}{number}"
    return Secret(name, "name", [name, name.upper()], f"{name}@localhost:~$ ls")


def letters(rng: random.Random) -> str:
    return "".join(rng.choices("abcdefghijklmnopqrstuvwxyz", k=5))


KINDS = (ipv4, ipv4, ipv4, ipv6, ipv6, mac, mac, interface_id, host, user)


def make_secrets(rng: random.Random) -> list[Secret]:
    secrets = [KINDS[number % len(KINDS)](rng, number) for number in range(COUNT)]
    assert len({secret.key for secret in secrets}) == COUNT
    return secrets


class Planter:
    """Writes texts, names and members with secrets in them."""

    def __init__(self, seed: int) -> None:
        self.rng = random.Random(seed)
        self.secrets = make_secrets(self.rng)
        self.names = [secret.key for secret in self.secrets if secret.kind == "name"]

    def text(self, size: int) -> bytes:
        words: list[str] = []
        length = 0
        while length < size:
            secret = self.rng.choice(self.secrets)
            words.append(self.rng.choice(FRAMES).format(self.rng.choice(secret.spellings)))
            words.append(f" {self.rng.choice(NOISE)} " + " " * self.rng.randrange(8))
            length += len(words[-1]) + len(words[-2])
        return "".join(words).encode()

    def introductions(self) -> bytes:
        return "".join(secret.introduction + "\n" for secret in self.secrets).encode()

    def processes(self) -> bytes:
        rows = [f"{name:<20} {number:>5} /usr/bin/{name}" for number, name in enumerate(self.names[:20])]
        return "\n".join(["USER                   PID COMMAND", *rows]).encode()

    def around_borders(self) -> bytes:
        """Secrets at each place around multiples of 64 KiB, where buffers end."""
        text = b""
        for border in range(1 << 16, 1 << 20, 1 << 16):
            secret = self.rng.choice(self.secrets)
            spelling = self.rng.choice(secret.spellings)
            text = text.ljust(border - self.rng.randrange(len(spelling) + 1) - 1, b".") + f" {spelling} ".encode()
        return text

    def member_name(self) -> str:
        one, other = self.rng.sample(self.secrets, 2)
        return f"./linux/{one.spellings[0]}/{other.spellings[0]}/{self.rng.randrange(1 << 30)}.log"

    def package(self, members: dict[str, bytes]) -> bytes:
        stream = io.BytesIO()
        with tarfile.open(fileobj=stream, mode="w:gz", format=tarfile.GNU_FORMAT) as archive:
            for name, content in members.items():
                header = tarfile.TarInfo(name)
                header.size = len(content)
                header.mtime = 1795315600 + self.rng.randrange(60)
                header.mode = self.rng.choice((0o644, 0o600, 0o755))
                header.uid, header.gid = self.rng.randrange(1000), self.rng.randrange(1000)
                header.uname, header.gname = self.rng.choice(self.names), self.rng.choice(["root", *self.names])
                archive.addfile(header, io.BytesIO(content))
        return stream.getvalue()

    def nested_package(self) -> bytes:
        inner = self.package({self.member_name(): self.text(50_000),
                              "./archive/syslib/startup.log.gz": gzip.compress(self.text(150_000))})
        middle = self.package({"./netfp_logs_post_mortem.tgz": inner, self.member_name(): self.text(10_000)})
        return self.package({
            "./fuse/HistoryLog.log": self.text(300_000), "./linux/system.log": self.introductions(),
            "./linux/processes.log": self.processes(), "./linux/borders.log": self.around_borders(),
            "./archive/dispatcher/middle.log.gz": gzip.compress(self.text(200_000)),
            "./netfp_logs_post_mortem.tgz": middle, "./empty.log": b"", self.member_name(): self.text(5000),
        })
