using System;
using System.Collections.Generic;

namespace Tavlyn
{
    /// <summary>The calls of the C interface under their own names. Texts, records and single numbers can also be
    /// handed over as bytes and pointers: a path on Linux may be any bytes, and a null pointer means something to
    /// some calls. What a call points to is copied. The calls do not wait for each other, see docs/threads.md;
    /// Device.Do does.</summary>
    public static partial class Calls
    {
        // Every function that the library was ever given: another thread may still be in an earlier one.
        private static readonly List<Delegate> Kept = new List<Delegate>();

        static Calls()
        {
            Loading.Prepare();
        }
    }
}
