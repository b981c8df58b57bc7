import assert from 'node:assert/strict';
import { afterEach, beforeEach, describe, it } from 'node:test';
import { heading, row, shown } from './browser.mjs';
import { Data, varied } from './data.mjs';

let page;
let complaints;
beforeEach(async () => {
    ({ page, complaints } = await shown('varied', varied()));
    await page.click('#expand');
});
afterEach(() => assert.deepEqual(complaints, []));

const texts = (selector) => page.locator('#panel ' + selector).allTextContents();
const choose = (name) => row(page, name).click();

describe('a value', () => {
    it('that is one number stands alone, with its unit', async () => {
        await choose('Density');
        assert.equal(await page.locator('.value-now').textContent(), '7850 KilogramPerCubicMeter');
    });

    it('that is an array is a plot and a table, a part at a time', async () => {
        await choose('strain');
        assert.equal(await page.locator('.plot svg').getAttribute('aria-label'), 'Plot of 250 values from 0 to 0.249');
        assert.equal((await texts('tbody tr')).length, 100);
        await page.click('.more');
        assert.equal((await texts('tbody tr')).length, 200);
        await page.click('.more');
        assert.equal((await texts('tbody tr')).length, 250);
        assert.equal(await page.locator('.more').count(), 0);
    });

    it('that is cut says so, with the real number', async () => {
        await choose('wave');
        assert.match(await page.locator('.say').textContent(), /first 250 elements of 123,456: made with --all/);
        assert.match(await page.locator('.facts').textContent(), /Elements123,456/);
    });

    it('that is texts and is cut tells how many of them are here', async () => {
        const data = new Data('cut');
        data.add(1, 'string', 'many', { value: ['a', 'b', 'c'], cut: 123456 });
        ({ page, complaints } = await shown('cut', data, { address: '#many' }));
        assert.match(await page.locator('.facts').textContent(), /^Texts3 in this page$/);
    });

    it('of vectors has a column for each component', async () => {
        await choose('outline');
        assert.deepEqual(await texts('th'), ['#', 'x (Meter)', 'y (Meter)']);
        assert.deepEqual(await texts('tbody tr:nth-child(3) td'), ['2', '4', '3']);
    });

    it('that is a matrix stands as its rows', async () => {
        await choose('turn');
        assert.deepEqual(await texts('tr:nth-child(1) td'), ['0', '-1', '0']);
    });

    it('of bytes is shown in hexadecimal digits and as characters', async () => {
        await choose('bytes');
        assert.match((await texts('pre'))[0], /^000000 {2}48 65 6c 6c 6f 00 ff +Hello\.\.$/);
    });

    it('of many bytes is shown a part at a time', async () => {
        const data = new Data('bytes');
        data.add(1, 'binary', 'b', { value: '61'.repeat(16 * 150 + 1) });
        ({ page, complaints } = await shown('bytes', data, { address: '#b' }));
        const lines = async () => (await texts('pre'))[0].split('\n');
        assert.equal((await lines()).length, 100);
        assert.match((await lines())[99], /^000630 {2}(61 ){16} a{16}$/);
        await page.click('text=Show 51 more of 151 lines');
        assert.equal((await lines()).length, 151);
        assert.match((await lines())[150], /^000960 {2}61 +a$/);
        assert.equal(await page.locator('.more').count(), 0);
    });

    it('that is a long text is cut, with a button for all of it', async () => {
        await choose('story');
        assert.equal((await texts('pre'))[0].length, 2001);
        await page.click('text=Show all (8,800 characters)');
        assert.equal((await texts('pre'))[0].length, 8800);
    });

    it('of texts shows each by itself, with its lines', async () => {
        await choose('list');
        assert.deepEqual(await texts('pre'), ['one', 'two', '']);
        await choose('Note');
        assert.deepEqual(await texts('pre'), ['plain\nin two lines']);
    });

    it('of structs has a column for each field', async () => {
        await choose('poses');
        assert.deepEqual(await texts('th'), ['#', 'position', 'time']);
        assert.deepEqual(await texts('tbody tr:nth-child(2) td'), ['1', '0.25, 0, 0.5', '400']);
    });

    it('that stands elsewhere is told by its URI', async () => {
        await choose('elsewhere');
        assert.match(await page.locator('.facts').textContent(), /Value athttps:\/\/example\.org\/values/);
        assert.equal(await page.locator('a').count(), 0);
    });

    it('without elements says so', async () => {
        await choose('empty');
        assert.match(await page.locator('#panel').textContent(), /No elements/);
    });
});

describe('a set', () => {
    it('lists what it holds, each leading there', async () => {
        await choose('Curves');
        assert.equal((await texts('table.wide tbody tr')).length, 12);
        await page.click('#panel .go >> text=closed');
        assert.equal(await heading(page), 'closed');
    });

    it('that holds arrays shows them as columns', async () => {
        await choose('Stress');
        const columns = 'h3:text("Columns") + .grid ';
        assert.deepEqual(await texts(columns + 'th'), ['#', 'strain', 'stress (MegaPascal)']);
        assert.deepEqual(await texts(columns + 'tbody tr:nth-child(3) td'), ['2', '0.002', '24']);
    });

    /** A page of one set, "s", whose columns are shown. */
    const filled = async (fill) => {
        const data = new Data('filled');
        data.add(1, 'group', 's');
        fill(data);
        ({ page, complaints } = await shown('filled', data, { address: '#s' }));
    };

    it('at the top in place of a root is told as what it is', async () => {
        const data = new Data('top');
        data.json.kind[0] = -5;
        data.json.base.push([0, data.text('Mechanical')]);
        data.json.defaults.push([0, data.text('Meter'), 17]);
        ({ page, complaints } = await shown('top', data));
        assert.equal(await page.locator('.chips').textContent(), 'table');
        assert.equal(await page.locator('.facts').textContent(),
            'Version1Inherits fromMechanicalDefaultdouble in Meter');
    });

    it('tells how long columns are that were cut', async () => {
        await filled((data) => {
            data.add(2, 'double', 'a', { value: [1, 2, 3] });
            data.add(2, 'double', 'b', { value: [1, 2, 3, 4], cut: 12345 });
        });
        assert.deepEqual(await texts('.say'),
            ['Of b the page holds the first 4 elements of 12,345: made with --all it holds all.']);
    });

    it('of many arrays and values tells how many columns there would be', async () => {
        await filled((data) => {
            for (let i = 0; i < 20; ++i) data.add(2, 'double', 'a' + i, { value: [1, 2] });
            for (const set of ['m', 'n']) {
                data.add(2, 'node', set);
                for (let i = 0; i < 30; ++i) data.add(3, 'double', 'v' + i, { value: i });
            }
        });
        assert.deepEqual(await texts('p.soft'), ['12 of 20 arrays are columns here: the first.',
            '12 of 30 values are columns here: those that most of these have.']);
    });

    it('compares values of other units by their own', async () => {
        await filled((data) => {
            for (let i = 0; i < 1002; ++i) {
                data.add(2, 'node', 'n' + i);
                data.add(3, 'double', 'long', { value: i, unit: ['', 'Millimeter'][i - 1000] ?? 'Meter' });
                data.add(3, 'double', 'mixed', { value: i, unit: i % 2 ? 'Gram' : 'Kilogram' });
            }
        });
        assert.deepEqual(await texts('.compare th[scope="col"]'), ['Name', 'longMeter', 'mixedmixed units']);
        const line = (name) => page.locator('.compare tr', { has: page.locator(`.go:text-is("${name}")`) })
            .locator('td').allTextContents();
        assert.deepEqual(await line('n1'), ['1', '1 Gram']);
        for (let i = 0; i < 10; ++i) await page.locator('.more').first().click();
        assert.deepEqual(await line('n1000'), ['1000 (no unit)', '1000 Kilogram']);
        assert.deepEqual(await line('n1001'), ['1001 Millimeter', '1001 Gram']);
    });

    it('shows the unit behind a long value, too', async () => {
        await filled((data) => {
            for (const unit of ['Gram', 'Kilogram']) {
                data.add(2, 'node', unit);
                data.add(3, 'double', 'long', { value: [0.123456789012345, 0.123456789012345, 0.1], unit });
            }
        });
        const cell = page.locator('.compare td').first();
        assert.match(await cell.textContent(), /Gram$/);
        assert.ok(await cell.evaluate((td) => td.scrollWidth <= td.clientWidth));
    });

    it('that holds sets of the same values compares them', async () => {
        await choose('Metals');
        assert.match(await page.locator('#panel').textContent(), /Side by side/);
        assert.deepEqual(await texts('th[scope="row"]'), ['Steel', 'Brass', 'en-us', 'de-de']);
        assert.deepEqual(await texts('td.end'), ['7850', '8500']);
    });

    it('tells its names in all languages', async () => {
        await choose('Steel');
        assert.match(await page.locator('#panel').textContent(), /de-deStahlen-usStructural steel/);
    });

    it('tells the defaults of its units', async () => {
        await choose('Mechanical');
        assert.match(await page.locator('.facts').textContent(), /Defaultdouble in KilogramPerCubicMeter/);
    });
});

describe('schemas and findings', () => {
    it('tell which items inherit from which schema', async () => {
        await page.click('#tab-schemas');
        const sections = await texts('section');
        assert.deepEqual(sections, ['MechanicalMetals.SteelMetals.Brass',
            'Thermal (not among the schemas that were given)Metals.Steel',
            'Pose (not among the schemas that were given)Curves.poses']);
    });

    it('tell what does not conform, and lead there', async () => {
        await page.click('#tab-schemas');
        assert.match((await texts('.found'))[0], /Metals\.BrassMechanical: 'PoissonRatio' \(double\) is missing/);
        await page.click('.found .go');
        assert.equal(await heading(page), 'Brass');
        assert.match(await page.locator('.chips').textContent(), /does not conform to Mechanical/);
        await choose('Steel');
        assert.match(await page.locator('.chips').textContent(), /nodeconforms to Mechanicalnothing known of Thermal$/);
    });

    it('tell how many of the items that inherit were looked at', async () => {
        await page.click('#tab-schemas');
        assert.match(await page.locator('#panel').textContent(),
            /Of 2 items that inherit, 2 were looked at\.1 item does not conform/);
        const data = varied();
        data.json.conformance = data.json.conformance.slice(0, 1);
        ({ page, complaints } = await shown('looked', data));
        await page.click('#tab-schemas');
        assert.match(await page.locator('#panel').textContent(), /Of 2 items that inherit, 1 was looked at: all conform\./);
        data.json.conformance = [];
        ({ page, complaints } = await shown('looked', data));
        await page.click('#tab-schemas');
        assert.match(await page.locator('#panel').textContent(), /Of 2 items that inherit, 0 were looked at\./);
    });

    it('say when nobody has looked whether items conform', async () => {
        const data = varied();
        data.json.schemas = data.json.conformance = null;
        const other = await shown('unlooked', data);
        await other.page.click('#tab-schemas');
        assert.match(await other.page.locator('#panel').textContent(), /made without --schemas/);
        assert.deepEqual(other.complaints, []);
    });

    it('tell the findings of the checker, which lead to their items', async () => {
        await page.click('#tab-findings');
        assert.deepEqual(await texts('.found'), [
            'staleMetals.Brassit is counted as open 2 timeslive.count; a repair: the count becomes 0',
            'note1 × record.restbytes stand behind the last section',
            'note1,234 records of 56,789 bytes, which nothing reacheslive.unattached']);
        await page.click('.found .go');
        assert.equal(await heading(page), 'Brass');
        assert.match(await page.locator('#panel').textContent(), /What is amiss/);
    });

    it('mark the items in the tree', async () => {
        assert.equal(await row(page, 'Brass').locator('.dot.stale').count(), 1);
        assert.equal(await page.locator('#tree .dot').count(), 1);
    });
});

it('tells what is in the page and that it is all of the data', async () => {
    await page.click('#tab-about');
    assert.match(await page.locator('#panel').textContent(), /who gets the page gets the data/);
    assert.match(await page.locator('#panel').textContent(), /at most 10,000 elements/);
    assert.deepEqual((await texts('h3:text("Keys") + .grid th')), ['\u2191 \u2193', '\u2192', '\u2190', 'Enter, space', '*',
        'Home, End', 'Page up, Page down', 'a letter', '/']);
});
