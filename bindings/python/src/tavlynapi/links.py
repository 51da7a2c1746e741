"""Which products there are, and where a search looks for them."""
import ipaddress
from typing import NamedTuple, Optional, Tuple

from . import calls

USB, ETHERNET = 0, 2
COM_PORTS = range(1, 257)
TCP_PORTS = range(1, 65536)


class Product(NamedTuple):
    """A product with its bit in a search, and what people call it."""

    name: str
    code: int
    called: str


PRODUCTS = {
    "reader": Product("reader", 1, "reader"),
    "magstripe": Product("magstripe", 2, "magstripe reader"),
    "sonar": Product("sonar", 4, "sonar sensor"),
}


class Link(NamedTuple):
    """A serial port, an Ethernet adapter, or USB without either."""

    com: Optional[int] = None
    baud: int = 9600
    ip: Optional[Tuple[str, int]] = None

    def check(self) -> None:
        """Raises ValueError for what is no port or address."""
        if self.com is not None and self.ip is not None:
            raise ValueError("com and ip exclude each other")
        if self.com is not None and self.com not in COM_PORTS:
            raise ValueError(f"a COM port is 1 to 256, not {self.com!r}")
        if self.ip is not None:
            try:
                address, port = self.ip
            except (TypeError, ValueError):
                raise ValueError(f'ip is an address and a port, such as ("10.0.0.5", 10001), not {self.ip!r}') from None
            ipaddress.IPv4Address(address)
            if port not in TCP_PORTS:
                raise ValueError(f"a TCP port is 1 to 65535, not {port!r}")

    def connect(self, product: Product) -> bool:
        """Searches; returns whether everything that was found could be read."""
        calls.SetConnectProduct(product.code)
        if self.com is not None:
            calls.SetBaudRate(self.baud)
            calls.SetComSrchRange(self.com, self.com)
            return calls.ComConnect(None) == 1
        if self.ip is not None:
            address, port = self.ip
            a, b, c, d = ipaddress.IPv4Address(address).packed
            calls.SetIpPort(a, b, c, d, port)
        calls.SetDevTypeSrch(USB if self.ip is None else ETHERNET)
        return calls.USBConnect(None) == 1

    def nothing(self, product: Product) -> str:
        """That nothing was found."""
        if self.com is not None:
            return f"no {product.called} answers on COM{self.com}"
        if self.ip is not None:
            return f"no {product.called} answers at {self.ip[0]}:{self.ip[1]}"
        return f"no {product.called} is plugged in"
