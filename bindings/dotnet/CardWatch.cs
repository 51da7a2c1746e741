using System.Collections.Generic;

namespace Tavlyn
{
    internal struct CardChange
    {
        internal readonly Card Card;
        internal readonly bool Arrived;

        internal CardChange(Card card, bool arrived)
        {
            Card = card;
            Arrived = arrived;
        }
    }

    // What comes and goes, told from one answer of a reader to the next.
    internal sealed class CardWatch
    {
        private Card on;
        private Card doubted;

        // now: null for none.
        internal List<CardChange> Take(Card now)
        {
            var changes = new List<CardChange>();
            Card before = doubted;
            doubted = null;
            if (before == null && now != null && now.IsDoubtful && !now.Equals(on))
            {
                doubted = now;  // it may have been read half; the next answer decides
                return changes;
            }
            if (now == null && before != null) Change(before, changes);
            Change(now, changes);
            return changes;
        }

        private void Change(Card now, List<CardChange> changes)
        {
            if (Equals(now, on)) return;
            if (on != null) changes.Add(new CardChange(on, false));
            on = now;
            if (on != null) changes.Add(new CardChange(on, true));
        }
    }
}
