"""That the broker and the clients of these tests do what the tests rely on: they lose nothing, and keep others out."""
import unittest

from broker import Authority, Broker, Rules
from clients import Client, Subscriber, publish
from stage import Stage

_MESSAGES = 20
_KILLS = 2
_RIGHTS = "user server\ntopic read tavlyn/#\n\nuser desk\ntopic write tavlyn/site/desk/#\n"
_USERS = {"server": "secret", "desk": "another"}


class TheBroker(unittest.TestCase):
    """With a subscriber and a publisher, before there is an agent."""

    def setUp(self) -> None:
        self.stage = Stage()
        self.addCleanup(self.stage.__exit__, None, None, None)

    def test_loses_nothing_when_it_is_killed(self) -> None:
        """Neither a message that it has acknowledged, nor their order, nor what is retained."""
        broker = Broker(self.stage)
        publish(broker, "tavlyn/state", "kept", retained=True)
        subscriber = Subscriber(broker, "tavlyn/card", quality=0)
        for number in range(1, _MESSAGES + 1):
            publish(broker, "tavlyn/card", {"sequence": number})
            if number % (_MESSAGES // _KILLS) == 0:
                broker.kill()
                broker.start()
                subscriber.await_connection(number * _KILLS // _MESSAGES + 1)
        messages = subscriber.wait_topic("card", _MESSAGES)
        self.assertEqual([message.json()["sequence"] for message in messages], list(range(1, _MESSAGES + 1)))
        late = Subscriber(broker, "tavlyn/state")
        self.assertTrue(late.wait_topic("state")[0].retained)

    def test_takes_only_what_a_user_may_publish(self) -> None:
        """What is forbidden is dropped without a word, as agents will find it."""
        broker = Broker(self.stage, Rules(_USERS, _RIGHTS))
        subscriber = Subscriber(broker, "tavlyn/#", client=Client("server"))
        publish(broker, "tavlyn/site/other/card", "forged", client=Client("desk"))
        publish(broker, "tavlyn/site/desk/card", "own", client=Client("desk"))
        subscriber.wait_topic("card")
        self.assertEqual([message.payload for message in subscriber.messages()], ["own"])
        with self.assertRaisesRegex(AssertionError, "not authorised"):
            publish(broker, "tavlyn/site/desk/card", "nobody's")

    def test_shows_and_wants_certificates(self) -> None:
        """That of the broker is checked, and so is that of the client."""
        authority = Authority(self.stage)
        own = authority.certificate("desk")
        broker = Broker(self.stage, Rules(authority=authority, client_certificates=True))
        subscriber = Subscriber(broker, "tavlyn/#", client=Client(certificate=own))
        publish(broker, "tavlyn/card", "seen", client=Client(certificate=own))
        self.assertEqual(subscriber.wait_topic("card")[0].payload, "seen")
        with self.assertRaises(AssertionError):
            publish(broker, "tavlyn/card", "without")


if __name__ == "__main__":
    unittest.main()
