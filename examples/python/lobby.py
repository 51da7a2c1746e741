"""Two doors at once, with asyncio: each card opens the relay of its own reader for a moment."""
import asyncio
import sys

import tavlynapi

OPEN_SECONDS = 3


async def serve(name: str, reader: tavlynapi.Reader) -> None:
    """Serves one door until its reader is gone."""
    async for card in reader.cards():
        print(f"{name}: {card}", flush=True)
        reader.relay(True)
        await asyncio.sleep(OPEN_SECONDS)
        reader.relay(False)


async def main(seconds: float) -> None:
    """Serves both for a time."""
    with tavlynapi.connect(index=0) as entrance, tavlynapi.connect(index=1) as garage:
        doors = asyncio.gather(serve("entrance", entrance), serve("garage", garage))
        try:
            await asyncio.wait_for(doors, seconds)
        except asyncio.TimeoutError:
            print("closed")


asyncio.run(main(float(sys.argv[1])))
