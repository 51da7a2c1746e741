"""Opens devices."""
import dataclasses
from typing import Dict, List, Literal, Optional, Tuple, Type, Union, overload

from .device import Device
from .errors import NoDevice
from .library import lock
from .links import PRODUCTS, Link, Product
from .magstripe import Magstripe
from .places import Place, Table
from .reader import Reader
from .sonar import Sonar

# The library's state is one per process.
_TABLE = Table()
_CLASSES: Dict[str, Type[Device]] = {one.product: one for one in (Reader, Magstripe, Sonar)}


@dataclasses.dataclass(frozen=True)
class Choice:
    """What names a device among several."""

    serial: Optional[str]
    luid: Optional[int]
    index: Optional[int]

    def fits(self, place: Place) -> bool:
        """Whether it is this one."""
        return (
            self.serial in (None, place.serial_number)
            and self.luid in (None, place.luid)
            and self.index in (None, place.index)
        )

    def missing(self) -> str:
        """What no device has."""
        named = {"serial number": self.serial, "LUID": self.luid, "index": self.index}
        return " and ".join(name for name, value in named.items() if value is not None)


def _searched(product: str, link: Link) -> Product:
    if product not in PRODUCTS:
        raise ValueError(f"a product is one of {', '.join(PRODUCTS)}, not {product!r}")
    link.check()
    _TABLE.search(PRODUCTS[product], link)
    return PRODUCTS[product]


def _chosen(product: Product, link: Link, choice: Choice) -> Place:
    if not _TABLE.places:
        text = link.nothing(product)
        raise NoDevice(text, 0, text)
    for place in _TABLE.places:
        if choice.fits(place):
            _TABLE.make_read(place)
            return place
    text = f"no {product.called} has this {choice.missing()}"
    raise NoDevice(text, 0, text)


@overload
def connect(
    product: Literal["reader"] = ...,
    *,
    serial: Optional[str] = ...,
    luid: Optional[int] = ...,
    index: Optional[int] = ...,
    com: Optional[int] = ...,
    baud: int = ...,
    ip: Optional[Tuple[str, int]] = ...,
) -> Reader:
    ...


@overload
def connect(
    product: Literal["magstripe"],
    *,
    serial: Optional[str] = ...,
    luid: Optional[int] = ...,
    index: Optional[int] = ...,
    com: Optional[int] = ...,
    baud: int = ...,
    ip: Optional[Tuple[str, int]] = ...,
) -> Magstripe:
    ...


@overload
def connect(
    product: Literal["sonar"],
    *,
    serial: Optional[str] = ...,
    luid: Optional[int] = ...,
    index: Optional[int] = ...,
    com: Optional[int] = ...,
    baud: int = ...,
    ip: Optional[Tuple[str, int]] = ...,
) -> Sonar:
    ...


def connect(
    product: str = "reader",
    *,
    serial: Optional[str] = None,
    luid: Optional[int] = None,
    index: Optional[int] = None,
    com: Optional[int] = None,
    baud: int = 9600,
    ip: Optional[Tuple[str, int]] = None,
) -> Union[Reader, Magstripe, Sonar, Device]:
    """Opens a device: on USB, on a serial port (com=3) or behind an Ethernet adapter (ip=("10.0.0.5", 10001)).

    serial, luid or index choose one of several; otherwise it is the first. Raises NoDevice if there is none.
    """
    link = Link(com, baud, ip)
    with lock:
        try:
            kind = _searched(product, link)
            return _CLASSES[product](_TABLE, _chosen(kind, link, Choice(serial, luid, index)))
        except BaseException:
            _TABLE.tidy()
            raise


def devices(
    product: Literal["reader", "magstripe", "sonar"] = "reader",
    *,
    com: Optional[int] = None,
    baud: int = 9600,
    ip: Optional[Tuple[str, int]] = None,
) -> List[Place]:
    """The devices that there are, with what connect() chooses them by."""
    with lock:
        try:
            _searched(product, Link(com, baud, ip))
            return list(_TABLE.places)
        finally:
            _TABLE.tidy()


def close_all() -> None:
    """Closes every device that is open."""
    _TABLE.remove_all()
